#include "links/format/dates.h"

#include <unicode/dtptngen.h>
#include <unicode/reldatefmt.h>
#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>

#include <QTimeZone>
#include <array>
#include <map>
#include <memory>

#include "links/format/formatting_locale.h"
#include "links/text/icu_text.h"
#include "links/text/localization.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

icu::Locale localeNamed(const QString& name) {
    return icu::Locale(name.toLatin1().constData());
}

/// The zone that Qt takes for local, which unlike ICU's own follows a change of the system's zone.
std::unique_ptr<icu::TimeZone> localTimeZone(const QDateTime& date) {
    const icu::UnicodeString id(QTimeZone::systemTimeZoneId().constData(), -1, US_INV);
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(id));
    if (*zone != icu::TimeZone::getUnknown())
        return zone;
    return std::make_unique<icu::SimpleTimeZone>(date.toLocalTime().offsetFromUtc() * 1000, id);
}

QString patternOf(const icu::DateFormat* format) {
    icu::UnicodeString pattern;
    if (const auto* simple = dynamic_cast<const icu::SimpleDateFormat*>(format))
        simple->toPattern(pattern);
    return fromICU(pattern);
}

/// What the locale calls a day so many days before today; empty: it has no word for that.
QString wordForDay(std::size_t daysAgo, const icu::Locale& locale, UDisplayContext context) {
    static constexpr std::array directions{UDAT_DIRECTION_THIS, UDAT_DIRECTION_LAST,
                                           UDAT_DIRECTION_LAST_2};
    UErrorCode failure = U_ZERO_ERROR;
    const icu::RelativeDateTimeFormatter formatter(locale, nullptr, UDAT_STYLE_LONG, context,
                                                   failure);
    icu::UnicodeString word;
    formatter.format(directions.at(daysAgo), UDAT_ABSOLUTE_DAY, word, failure);
    return U_SUCCESS(failure) ? fromICU(word) : QString();
}

/// The date formats of one locale, kept because setting them up costs far more than using them.
class LocaleDateFormats {
public:
    explicit LocaleDateFormats(const icu::Locale& locale)
        : formatter_(icu::UnicodeString(u"y"), locale, failure_) {
        using Format = icu::DateFormat;
        const std::unique_ptr<Format> both(
            Format::createDateTimeInstance(Format::kFull, Format::kShort, locale));
        const std::unique_ptr<Format> day(Format::createDateInstance(Format::kFull, locale));
        dateAndTime_ = patternOf(both.get());
        day_ = patternOf(day.get());
        for (std::size_t daysAgo = 0; daysAgo < relativeDateAndTime_.size(); ++daysAgo) {
            QString word = wordForDay(daysAgo, locale, UDISPCTX_CAPITALIZATION_NONE);
            wordForDay_[daysAgo] =
                wordForDay(daysAgo, locale, UDISPCTX_CAPITALIZATION_FOR_BEGINNING_OF_SENTENCE);
            QString& pattern = relativeDateAndTime_[daysAgo] = dateAndTime_;
            if (!word.isEmpty())
                pattern.replace(day_, u'\'' + word.replace(u"'"_s, u"''"_s) + u'\'');
        }
    }

    /// A full date and a short time, for a day before today the date by its word if there is one.
    /// ICU's own relative formats ask the system for the time, which ours must not.
    [[nodiscard]] const QString& dateAndTime(qint64 daysAgo) const {
        const auto index = static_cast<std::size_t>(daysAgo);
        return index < relativeDateAndTime_.size() ? relativeDateAndTime_[index] : dateAndTime_;
    }

    [[nodiscard]] QString day(const QDateTime& date, qint64 daysAgo) {
        const auto index = static_cast<std::size_t>(daysAgo);
        const bool hasWord = index < wordForDay_.size() && !wordForDay_[index].isEmpty();
        return hasWord ? wordForDay_[index] : string(date, day_);
    }

    /// Empty: the format is malformed.
    [[nodiscard]] QString string(const QDateTime& date, const QString& format) {
        UErrorCode failure = failure_;
        formatter_.applyPattern(toICU(format));
        formatter_.adoptTimeZone(localTimeZone(date).release());
        icu::UnicodeString text;
        formatter_.format(static_cast<UDate>(date.toMSecsSinceEpoch()), text, nullptr, failure);
        return U_SUCCESS(failure) ? fromICU(text) : QString();
    }

private:
    /// Of setting up the formatter.
    UErrorCode failure_ = U_ZERO_ERROR;
    QString dateAndTime_, day_;
    std::array<QString, 3> wordForDay_;
    std::array<QString, 3> relativeDateAndTime_;
    icu::SimpleDateFormat formatter_;
};

LocaleDateFormats& formatsOf(const QString& localeName) {
    static std::map<QString, LocaleDateFormats> formats;
    const QString name = localeName.isEmpty() ? dateLocaleName() : localeName;
    return formats.try_emplace(name, localeNamed(name)).first->second;
}

qint64 daysBetween(const QDateTime& date, const QDateTime& now) {
    return date.toLocalTime().date().daysTo(now.toLocalTime().date());
}

}  // namespace

QString dayDescription(const QDateTime& date, const QDateTime& now, const QString& localeName) {
    return formatsOf(localeName).day(date, daysBetween(date, now));
}

QString fuzzyDescription(const QDateTime& date, const QDateTime& now, const QString& localeName) {
    const qint64 seconds = date.msecsTo(now) / 1000;
    if (seconds < 60)
        return localized("just now");
    if (seconds < 120)
        return localized("1 minute ago");
    if (seconds < 660)
        return filledFormat(localized("%d minutes ago"), {QString::number(seconds / 60)});
    const qint64 daysAgo = daysBetween(date, now);
    LocaleDateFormats& formats = formatsOf(localeName);
    return formats.string(date, formats.dateAndTime(daysAgo));
}

QString dateStringWithFormat(const QDateTime& date, const QString& format,
                             const QString& localeName) {
    return formatsOf(localeName).string(date, format);
}

QString dateFormatFromTemplate(const QString& templateText, const QString& localeName) {
    UErrorCode failure = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> generator(
        icu::DateTimePatternGenerator::createInstance(
            localeNamed(localeName.isEmpty() ? dateLocaleName() : localeName), failure));
    if (U_FAILURE(failure))
        return {};
    return fromICU(generator->getBestPattern(toICU(templateText), failure));
}

}  // namespace links
