#pragma once

#include <QDateTime>
#include <QString>

namespace platform {

/// The many ways in which servers write a cookie's date (RFC 6265, 5.1.1). Invalid: none of them.
[[nodiscard]] QDateTime cookieDate(const QString& text);

}  // namespace platform
