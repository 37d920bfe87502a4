#include "http/content/http_date.h"

#include <unicode/udat.h>

#include <QTimeZone>
#include <memory>

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

/// The one form that servers of today send (RFC 9110, 5.6.7: IMF-fixdate). Nothing: another form.
std::optional<QDateTime> fixedDate(QStringView text) {
    static constexpr QStringView months = u"JanFebMarAprMayJunJulAugSepOctNovDec";
    const bool hasShape = text.size() == 29 && text[3] == u',' && text[4] == u' ' &&
                          text[7] == u' ' && text[11] == u' ' && text[16] == u' ' &&
                          text[19] == u':' && text[22] == u':' && text.endsWith(u" GMT");
    const qsizetype month = hasShape ? months.indexOf(text.mid(8, 3)) : -1;
    if (month < 0 || month % 3 != 0) {
        return std::nullopt;
    }
    const auto number = [&text](qsizetype from, qsizetype count) {
        bool isNumber = false;
        const int value = text.mid(from, count).toInt(&isNumber);
        return isNumber ? value : -1;
    };
    const QDate day(number(12, 4), static_cast<int>(month / 3) + 1, number(5, 2));
    const QTime time(number(17, 2), number(20, 2), number(23, 2));
    if (!day.isValid() || !time.isValid()) {
        return std::nullopt;
    }
    return QDateTime(day, time, Qt::UTC);
}

}  // namespace

std::optional<QDateTime> dateFromRFC1123String(const QString& text) {
    constexpr qsizetype longestDate = 100;
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty() || trimmed.size() > longestDate)
        return std::nullopt;
    if (const auto date = fixedDate(trimmed))
        return date;
    const QString weekday = trimmed.contains(u',') ? u"EEE, "_s : QString();
    const QString seconds = trimmed.count(u':') == 2 ? u":ss"_s : QString();
    const auto date = parsedDate(trimmed, u"%1dd MMM yyyy HH:mm%2 z"_s.arg(weekday, seconds));
    if (!date)
        return std::nullopt;
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(*date), Qt::UTC);
}

}  // namespace http
