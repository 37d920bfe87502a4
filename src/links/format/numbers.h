#pragma once

#include <QString>
#include <QVariant>
#include <memory>

namespace platform {
class UserDefaults;
}

namespace links {

/// How numbers look.
struct NumberStyle {
    /// In ICU's spelling.
    QString localeName;
    bool usesGroupingSeparator = true;
    /// False: a point before the decimals and commas between thousands, whatever the locale.
    bool isLocalized = true;
    /// For a number whose decimals nobody fixed; negative: 2 below 10 and 1 from there on.
    qint64 automaticFractionDigits = -1;
};

/// Makes numbers readable in one style, rounding halves away from zero. Main thread.
class NumberFormatter {
public:
    explicit NumberFormatter(NumberStyle style);
    ~NumberFormatter();

    /// At least `minimumIntegerDigits` before the decimals, and `fractionDigits` after (negative:
    /// as the style says): exactly so many, or with `trim` no more than needed. An invalid `number`
    /// gives an empty text.
    [[nodiscard]] QString string(const QVariant& number, int minimumIntegerDigits,
                                 int fractionDigits, bool trim) const;

    [[nodiscard]] const NumberStyle& style() const { return style_; }

private:
    class Cache;

    NumberStyle style_;
    std::unique_ptr<Cache> cache_;
};

/// The user's locale and the three "Numbers: " settings.
[[nodiscard]] NumberStyle numberStyle(const platform::UserDefaults& defaults);

/// The program's own formatter, in the user's locale and as it was told. All that follows is for
/// the main thread.
[[nodiscard]] const NumberFormatter& sharedNumberFormatter();
void setSharedNumberStyle(const NumberStyle& style);

[[nodiscard]] QString stringWithNumber(const QVariant& number, int minimumNumberOfIntegerDigits,
                                       int numberOfFractionDigits, bool trim);
[[nodiscard]] QString stringWithNumber(const QVariant& number, int numberOfFractionDigits,
                                       bool trim);
[[nodiscard]] QString stringWithDouble(double number, int numberOfFractionDigits, bool trim);
[[nodiscard]] QString stringWithInteger(qint64 number);
[[nodiscard]] QString stringWithUnsignedInteger(quint64 number);

/// With so many decimals, and then without zeros at its end (even of the integer, so ask for 1
/// decimal at least); `localize`: with the user's decimal separator.
[[nodiscard]] QString stringWithFloat(double number, int numberOfDecimals, bool localize);

}  // namespace links
