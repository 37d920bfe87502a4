#pragma once

#include <QByteArray>
#include <optional>

#include "platform/base/clock.h"
#include "platform/net/http_message.h"

namespace http {

/// The head of a stored response.
struct CachedHeaders {
    platform::HTTPHeaders headers;  ///< As the server sent them, but for what is not true any more.
    int statusCode = 0;
    std::optional<platform::Seconds> expires;  ///< Since 1970; nothing: not known.

    /// Headers, status and expiry together, as a request takes them.
    [[nodiscard]] platform::HTTPHeaders merged() const;
};

/// As a property list, and back. Nothing: it is none of these.
[[nodiscard]] QByteArray encodedCachedHeaders(const CachedHeaders& cached);
[[nodiscard]] std::optional<CachedHeaders> decodedCachedHeaders(const QByteArray& data);

/// Until when a response may be used: so many seconds of the caller's, else of "max-age", from
/// now on; else until "Expires" (RFC 9111, 5.2.2.1 and 5.3). Nothing: nobody says. `now` and the
/// result in seconds since 1970.
[[nodiscard]] std::optional<platform::Seconds> expiryDate(const platform::HTTPHeaders& headers,
                                                          platform::Seconds maxAge,
                                                          platform::Seconds now);
/// False: the server forbids it outright.
[[nodiscard]] bool serverAllowsResponseCaching(const platform::HTTPHeaders& headers);

}  // namespace http
