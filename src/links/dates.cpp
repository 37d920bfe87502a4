#include "links/dates.h"

#include <unicode/dtptngen.h>
#include <unicode/reldatefmt.h>
#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>

#include <QTimeZone>
#include <memory>

#include "links/formatting_locale.h"
#include "links/localization.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

QString fromICU(const icu::UnicodeString& text) {
    return QString::fromUtf16(text.getBuffer(), text.length());
}

icu::UnicodeString toICU(const QString& text) {
    return icu::UnicodeString(reinterpret_cast<const char16_t*>(text.utf16()),
                              static_cast<int32_t>(text.size()));
}

icu::Locale localeNamed(const QString& name) {
    const QString chosen = name.isEmpty() ? dateLocaleName() : name;
    return icu::Locale(chosen.toLatin1().constData());
}

/// The zone that Qt takes for local, which unlike ICU's own follows a change of the system's zone.
std::unique_ptr<icu::TimeZone> localTimeZone(const QDateTime& date) {
    const icu::UnicodeString id(QTimeZone::systemTimeZoneId().constData(), -1, US_INV);
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(id));
    if (*zone != icu::TimeZone::getUnknown())
        return zone;
    return std::make_unique<icu::SimpleTimeZone>(date.toLocalTime().offsetFromUtc() * 1000, id);
}

QString formatted(const QDateTime& date, const icu::UnicodeString& format,
                  const icu::Locale& locale) {
    UErrorCode failure = U_ZERO_ERROR;
    icu::SimpleDateFormat formatter(format, locale, failure);
    if (U_FAILURE(failure))
        return {};
    formatter.adoptTimeZone(localTimeZone(date).release());
    icu::UnicodeString text;
    formatter.format(static_cast<UDate>(date.toMSecsSinceEpoch()), text);
    return fromICU(text);
}

QString patternOf(const icu::DateFormat* format) {
    icu::UnicodeString pattern;
    if (const auto* simple = dynamic_cast<const icu::SimpleDateFormat*>(format))
        simple->toPattern(pattern);
    return fromICU(pattern);
}

/// What the locale calls a day so many days before today; empty: it has no word for that.
QString wordForDay(qint64 daysAgo, const icu::Locale& locale) {
    UDateDirection direction = UDAT_DIRECTION_THIS;
    if (daysAgo == 1)
        direction = UDAT_DIRECTION_LAST;
    else if (daysAgo == 2)
        direction = UDAT_DIRECTION_LAST_2;
    else if (daysAgo != 0)
        return {};
    UErrorCode failure = U_ZERO_ERROR;
    const icu::RelativeDateTimeFormatter formatter(locale, nullptr, UDAT_STYLE_LONG,
                                                   UDISPCTX_CAPITALIZATION_FOR_STANDALONE, failure);
    icu::UnicodeString word;
    if (U_SUCCESS(failure))
        formatter.format(direction, UDAT_ABSOLUTE_DAY, word, failure);
    return U_SUCCESS(failure) ? fromICU(word) : QString();
}

/// A full date and a short time, with a word in place of the date where there is one. ICU's own
/// relative formats ask the system for the time, which ours must not.
QString relativeDescription(const QDateTime& date, const QDateTime& now,
                            const icu::Locale& locale) {
    using Format = icu::DateFormat;
    const std::unique_ptr<Format> both(
        Format::createDateTimeInstance(Format::kFull, Format::kShort, locale));
    QString pattern = patternOf(both.get());
    const qint64 daysAgo = date.toLocalTime().date().daysTo(now.toLocalTime().date());
    QString word = wordForDay(daysAgo, locale);
    if (!word.isEmpty()) {
        const std::unique_ptr<Format> day(Format::createDateInstance(Format::kFull, locale));
        const QString quoted = u'\'' + word.replace(u"'"_s, u"''"_s) + u'\'';
        pattern.replace(patternOf(day.get()), quoted);
    }
    return formatted(date, toICU(pattern), locale);
}

}  // namespace

QString fuzzyDescription(const QDateTime& date, const QDateTime& now, const QString& localeName) {
    const qint64 seconds = date.msecsTo(now) / 1000;
    if (seconds < 60)
        return localized("just now");
    if (seconds < 120)
        return localized("1 minute ago");
    if (seconds < 660)
        return filledFormat(localized("%d minutes ago"), {QString::number(seconds / 60)});
    return relativeDescription(date, now, localeNamed(localeName));
}

QString dateStringWithFormat(const QDateTime& date, const QString& format,
                             const QString& localeName) {
    return formatted(date, toICU(format), localeNamed(localeName));
}

QString dateFormatFromTemplate(const QString& templateText, const QString& localeName) {
    UErrorCode failure = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> generator(
        icu::DateTimePatternGenerator::createInstance(localeNamed(localeName), failure));
    if (U_FAILURE(failure))
        return {};
    return fromICU(generator->getBestPattern(toICU(templateText), failure));
}

}  // namespace links
