#pragma once

#include <QtGlobal>

/// Status codes of HTTP (RFC 9110, 15) by which something is decided.
namespace platform::status {

inline constexpr int ok = 200;
inline constexpr int noContent = 204;
inline constexpr int partialContent = 206;
inline constexpr int notModified = 304;
inline constexpr int unauthorized = 401;
inline constexpr int proxyAuthenticationRequired = 407;
inline constexpr int rangeNotSatisfiable = 416;
inline constexpr int tooManyRequests = 429;
inline constexpr int serviceUnavailable = 503;

[[nodiscard]] constexpr bool isSuccess(qint64 code) {
    return code >= 200 && code <= 299;
}

}  // namespace platform::status
