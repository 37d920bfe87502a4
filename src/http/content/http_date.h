#pragma once

#include <QDateTime>
#include <QString>
#include <optional>

namespace http {

/// A date as in "Last-Modified" or "Expires": "Sun, 06 Nov 1994 08:49:37 GMT" or one of the older
/// forms of RFC 9110, 5.6.7; of the first, the weekday with its comma and the seconds may be absent
/// and the zone may be any that has a name or an offset. In UTC. Nothing: it is none.
[[nodiscard]] std::optional<QDateTime> dateFromRFC1123String(const QString& text);

}  // namespace http
