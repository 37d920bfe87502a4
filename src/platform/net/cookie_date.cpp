#include "platform/net/cookie_date.h"

#include <QRegularExpression>
#include <QTimeZone>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

std::optional<QTime> timeIn(const QString& token) {
    static const QRegularExpression form(u"^(\\d{1,2}):(\\d{1,2}):(\\d{1,2})(?!\\d)"_s);
    const auto match = form.match(token);
    const QTime time(match.captured(1).toInt(), match.captured(2).toInt(),
                     match.captured(3).toInt());
    return match.hasMatch() ? std::optional<QTime>(time) : std::nullopt;
}

/// The number at the start of a token that has as many digits. Nothing: it has not.
std::optional<int> numberIn(const QString& token, int fewest, int most) {
    static const QRegularExpression form(u"^\\d+"_s);
    const QString digits = form.match(token).captured();
    const bool fits = digits.size() >= fewest && digits.size() <= most;
    return fits ? std::optional<int>(digits.toInt()) : std::nullopt;
}

std::optional<int> monthIn(const QString& token) {
    static const QString names = u"janfebmaraprmayjunjulaugsepoctnovdec"_s;
    const qsizetype at = names.indexOf(token.left(3).toLower());
    const bool isMonth = token.size() >= 3 && at >= 0 && at % 3 == 0;
    return isMonth ? std::optional<int>(static_cast<int>(at / 3) + 1) : std::nullopt;
}

int fullYear(int year) {
    if (year >= 70 && year <= 99)
        return year + 1900;
    return year < 70 ? year + 2000 : year;
}

}  // namespace

QDateTime cookieDate(const QString& text) {
    static const QRegularExpression delimiters(
        u"[\\t\\x20-\\x2F\\x3B-\\x40\\x5B-\\x60\\x7B-\\x7E]+"_s);
    std::optional<QTime> time;
    std::optional<int> day, month, year;
    // Each token is the first of these that it can be and that is still missing.
    for (const QString& token : text.split(delimiters, Qt::SkipEmptyParts)) {
        if (!time && (time = timeIn(token)))
            continue;
        if (!day && (day = numberIn(token, 1, 2)))
            continue;
        if (!month && (month = monthIn(token)))
            continue;
        if (!year)
            year = numberIn(token, 2, 4);
    }
    if (!time || !day || !month || !year || !time->isValid() || fullYear(*year) < 1601)
        return {};
    const QDate date(fullYear(*year), *month, *day);
    return date.isValid() ? QDateTime(date, *time, QTimeZone::utc()) : QDateTime();
}

}  // namespace platform
