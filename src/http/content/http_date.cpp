#include "http/content/http_date.h"

#include <unicode/udat.h>

#include <QRegularExpression>
#include <QTimeZone>
#include <algorithm>
#include <memory>

#include "platform/base/utc.h"
#include "platform/text/ascii.h"

namespace http {

using namespace Qt::Literals::StringLiterals;

namespace {

struct FormatCloser {
    void operator()(UDateFormat* format) const { udat_close(format); }
};

const UChar* characters(QStringView text) {
    return reinterpret_cast<const UChar*>(text.utf16());
}

std::optional<double> parsedDate(const QString& text, const QString& pattern) {
    UErrorCode status = U_ZERO_ERROR;
    const QStringView zone = u"GMT";
    const std::unique_ptr<UDateFormat, FormatCloser> format(
        udat_open(UDAT_PATTERN, UDAT_PATTERN, "en_US_POSIX", characters(zone),
                  static_cast<std::int32_t>(zone.size()), characters(pattern),
                  static_cast<std::int32_t>(pattern.size()), &status));
    if (U_FAILURE(status))
        return std::nullopt;
    std::int32_t position = 0;
    const UDate date = udat_parse(format.get(), characters(text),
                                  static_cast<std::int32_t>(text.size()), &position, &status);
    if (U_FAILURE(status) || position != text.size())
        return std::nullopt;
    return date;
}

/// 1 to 12. 0: no month.
int monthNamed(const QString& name) {
    static const QString names = u"janfebmaraprmayjunjulaugsepoctnovdec"_s;
    const qsizetype at = names.indexOf(name.toLower());
    return at < 0 || at % 3 != 0 ? 0 : static_cast<int>(at / 3) + 1;
}

/// Two digits mean the last such year that lies no more than 50 years ahead (RFC 9110, 5.6.7).
int fullYear(const QString& digits) {
    if (digits.size() != 2)
        return digits.toInt();
    constexpr int century = 100, mostAhead = 50;
    const int now = QDate::currentDate().year();
    const int year = now - now % century + digits.toInt();
    return year > now + mostAhead ? year - century : year;
}

std::optional<QDateTime> dateOf(const QRegularExpressionMatch& match) {
    const QDate day(fullYear(match.captured(u"year"_s)), monthNamed(match.captured(u"month"_s)),
                    match.captured(u"day"_s).trimmed().toInt());
    const QTime time(match.captured(u"hour"_s).toInt(), match.captured(u"minute"_s).toInt(),
                     match.captured(u"second"_s).toInt());
    if (!day.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(day, time, platform::utc);
}

/// The form of today, letter by letter: every answer carries one, and nearly all are of this form.
/// Nothing: another one.
std::optional<QDateTime> dateOfToday(const QString& text) {
    static const QString form = u"aaa, 00 aaa 0000 00:00:00 GMT"_s;
    const auto fits = [](QChar letter, QChar expected) {
        if (expected == u'0')
            return platform::isAsciiDigit(letter);
        return expected == u'a' ? letter.isLetter() : letter == expected;
    };
    if (!std::equal(text.begin(), text.end(), form.begin(), form.end(), fits))
        return std::nullopt;
    const auto number = [&text](qsizetype at, qsizetype digits) {
        return QStringView(text).sliced(at, digits).toInt();
    };
    const QDate day(number(12, 4), monthNamed(text.sliced(8, 3)), number(5, 2));
    const QTime time(number(17, 2), number(20, 2), number(23, 2));
    if (!day.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(day, time, platform::utc);
}

/// The three forms of RFC 9110, 5.6.7: that of today, that of RFC 850, that of asctime(). Nothing:
/// another form.
std::optional<QDateTime> standardDate(const QString& text) {
    static const QString time = u"(?<hour>\\d\\d):(?<minute>\\d\\d):(?<second>\\d\\d)"_s;
    static const QRegularExpression forms[] = {
        QRegularExpression(u"^(?:[a-z]{3,9}, )?(?<day>\\d{2})([ -])(?<month>[a-z]{3})\\2"
                           "(?<year>\\d{2}|\\d{4}) %1 GMT$"_s.arg(time),
                           QRegularExpression::CaseInsensitiveOption),
        QRegularExpression(
            u"^[a-z]{3} (?<month>[a-z]{3}) (?<day>[ \\d]\\d) %1 (?<year>\\d{4})$"_s.arg(time),
            QRegularExpression::CaseInsensitiveOption),
    };
    for (const QRegularExpression& form : forms) {
        if (const auto match = form.match(text); match.hasMatch())
            return dateOf(match);
    }
    return std::nullopt;
}

/// A reader by pattern takes the 31st of February for a day in March, and a year of two digits for
/// one of antiquity.
bool isPossible(const QString& text) {
    static const QRegularExpression form(
        u"^(?:[a-z]{3}, *)?(\\d{1,2}) +([a-z]{3}) +(\\d{4}) +(\\d{1,2}):(\\d\\d)(?::(\\d\\d))? "_s,
        QRegularExpression::CaseInsensitiveOption);
    const auto match = form.match(text);
    const auto number = [&match](int group) { return match.captured(group).toInt(); };
    constexpr int lastHour = 23, lastMinute = 59, leapSecond = 60;
    return match.hasMatch() &&
           QDate::isValid(number(3), monthNamed(match.captured(2)), number(1)) &&
           number(4) <= lastHour && number(5) <= lastMinute && number(6) <= leapSecond;
}

}  // namespace

std::optional<QDateTime> dateFromRFC1123String(const QString& text) {
    constexpr qsizetype longestDate = 100;
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty() || trimmed.size() > longestDate)
        return std::nullopt;
    if (const auto date = dateOfToday(trimmed))
        return date;
    if (const auto date = standardDate(trimmed))
        return date;
    if (!isPossible(trimmed))
        return std::nullopt;
    const QString weekday = trimmed.contains(u',') ? u"EEE, "_s : QString();
    const QString seconds = trimmed.count(u':') == 2 ? u":ss"_s : QString();
    const auto date = parsedDate(trimmed, u"%1dd MMM yyyy HH:mm%2 z"_s.arg(weekday, seconds));
    if (!date)
        return std::nullopt;
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(*date), platform::utc);
}

}  // namespace http
