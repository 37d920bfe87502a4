#include "links/format/numbers.h"

#include <unicode/dcfmtsym.h>
#include <unicode/numberformatter.h>

#include <map>
#include <tuple>

#include "links/format/formatting_locale.h"
#include "links/settings.h"
#include "links/text/icu_text.h"
#include "platform/base/user_defaults.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

/// ICU refuses more.
constexpr int mostDigits = 999;

icu::Locale localeOf(const NumberStyle& style) {
    return icu::Locale(style.localeName.toLatin1().constData());
}

icu::number::LocalizedNumberFormatter makeFormatter(const NumberStyle& style, int integerDigits,
                                                    int leastFraction, int mostFraction) {
    using icu::number::IntegerWidth;
    using icu::number::Precision;
    auto formatter =
        icu::number::NumberFormatter::withLocale(localeOf(style))
            .precision(Precision::minMaxFraction(leastFraction, mostFraction))
            .roundingMode(UNUM_ROUND_HALFUP)
            .integerWidth(IntegerWidth::zeroFillTo(integerDigits))
            .grouping(style.usesGroupingSeparator ? UNUM_GROUPING_AUTO : UNUM_GROUPING_OFF);
    if (style.isLocalized)
        return formatter;
    UErrorCode failure = U_ZERO_ERROR;
    icu::DecimalFormatSymbols symbols(localeOf(style), failure);
    symbols.setSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol, u".");
    symbols.setSymbol(icu::DecimalFormatSymbols::kGroupingSeparatorSymbol, u",");
    return formatter.symbols(symbols);
}

icu::number::FormattedNumber formatted(const icu::number::LocalizedNumberFormatter& formatter,
                                       const QVariant& number, UErrorCode& failure) {
    switch (number.typeId()) {
        case QMetaType::Int:
        case QMetaType::Long:
        case QMetaType::LongLong:
        case QMetaType::UInt:
            return formatter.formatInt(number.toLongLong(), failure);
        case QMetaType::ULong:
        case QMetaType::ULongLong:
            return formatter.formatDecimal(number.toString().toStdString(), failure);
        default:
            return formatter.formatDouble(number.toDouble(), failure);
    }
}

QString decimalSeparator(const NumberStyle& style) {
    UErrorCode failure = U_ZERO_ERROR;
    const icu::DecimalFormatSymbols symbols(localeOf(style), failure);
    return fromICU(symbols.getConstSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol));
}

}  // namespace

/// Setting up a formatter costs a hundred times what using it does, and few widths are ever used.
class NumberFormatter::Cache {
public:
    const icu::number::LocalizedNumberFormatter& formatter(const NumberStyle& style,
                                                           int integerDigits, int leastFraction,
                                                           int mostFraction) {
        const auto key = std::tuple(integerDigits, leastFraction, mostFraction);
        auto found = formatters_.find(key);
        if (found == formatters_.end())
            found =
                formatters_
                    .emplace(key, makeFormatter(style, integerDigits, leastFraction, mostFraction))
                    .first;
        return found->second;
    }

private:
    std::map<std::tuple<int, int, int>, icu::number::LocalizedNumberFormatter> formatters_;
};

NumberFormatter::NumberFormatter(NumberStyle style)
    : style_(std::move(style)), cache_(std::make_unique<Cache>()) {}

NumberFormatter::~NumberFormatter() = default;

QString NumberFormatter::string(const QVariant& number, int minimumIntegerDigits,
                                int fractionDigits, bool trim) const {
    if (!number.isValid())
        return {};
    qint64 decimals = fractionDigits;
    if (decimals < 0)
        decimals = style_.automaticFractionDigits;
    if (decimals < 0)
        decimals = number.toDouble() < 10 ? 2 : 1;
    const int most = static_cast<int>(std::min<qint64>(decimals, mostDigits));
    const auto& formatter = cache_->formatter(
        style_, std::clamp(minimumIntegerDigits, 0, mostDigits), trim ? 0 : most, most);
    UErrorCode failure = U_ZERO_ERROR;
    return fromICU(formatted(formatter, number, failure).toString(failure));
}

NumberStyle numberStyle(const platform::UserDefaults& defaults) {
    return {.localeName = numberLocaleName(),
            .usesGroupingSeparator = !defaults.get(settings::numbersDisableGroupingSeparator),
            .isLocalized = !defaults.get(settings::numbersLeaveUnlocalized),
            .automaticFractionDigits = defaults.get(settings::numbersFractionDigits)};
}

namespace {

std::unique_ptr<const NumberFormatter>& ownFormatter() {
    static std::unique_ptr<const NumberFormatter> formatter =
        std::make_unique<const NumberFormatter>(NumberStyle{.localeName = numberLocaleName()});
    return formatter;
}

}  // namespace

const NumberFormatter& sharedNumberFormatter() {
    return *ownFormatter();
}

void setSharedNumberStyle(const NumberStyle& style) {
    ownFormatter() = std::make_unique<const NumberFormatter>(style);
}

QString stringWithNumber(const QVariant& number, int minimumNumberOfIntegerDigits,
                         int numberOfFractionDigits, bool trim) {
    return sharedNumberFormatter().string(number, minimumNumberOfIntegerDigits,
                                          numberOfFractionDigits, trim);
}

QString stringWithNumber(const QVariant& number, int numberOfFractionDigits, bool trim) {
    return stringWithNumber(number, 1, numberOfFractionDigits, trim);
}

QString stringWithDouble(double number, int numberOfFractionDigits, bool trim) {
    return stringWithNumber(number, numberOfFractionDigits, trim);
}

QString stringWithInteger(qint64 number) {
    return stringWithNumber(number, 0, true);
}

QString stringWithUnsignedInteger(quint64 number) {
    return stringWithNumber(number, 0, true);
}

QString stringWithFloat(double number, int numberOfDecimals, bool localize) {
    QString text = QString::number(number, 'f', numberOfDecimals);
    if (text.endsWith(u'0')) {
        while (text.endsWith(u'0'))
            text.chop(1);
        if (text.endsWith(u'.'))
            text.chop(1);
    }
    if (localize) {
        static const QString separator = decimalSeparator({.localeName = numberLocaleName()});
        text.replace(u"."_s, separator);
    }
    return text;
}

}  // namespace links
