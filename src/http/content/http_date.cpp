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

}  // namespace

std::optional<QDateTime> dateFromRFC1123String(const QString& text) {
    constexpr qsizetype longestDate = 100;
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty() || trimmed.size() > longestDate)
        return std::nullopt;
    const QString weekday = trimmed.contains(u',') ? u"EEE, "_s : QString();
    const QString seconds = trimmed.count(u':') == 2 ? u":ss"_s : QString();
    const auto date = parsedDate(trimmed, u"%1dd MMM yyyy HH:mm%2 z"_s.arg(weekday, seconds));
    if (!date)
        return std::nullopt;
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(*date), Qt::UTC);
}

}  // namespace http
