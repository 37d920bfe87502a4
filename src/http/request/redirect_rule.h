#pragma once

#include <QString>
#include <optional>

#include "platform/net/http_message.h"

namespace http {

enum class RedirectKind {
    None,
    AsGet,        ///< No body, and hardly any header, travels on.
    KeepsMethod,  ///< Method, body and headers travel on.
};

/// What a status means for a response with a "Location". `keepsMethodOnFound`: 301 and 302 are
/// taken as RFC 9110, 15.4 describes them rather than as browsers do.
[[nodiscard]] RedirectKind redirectKind(int statusCode, bool keepsMethodOnFound);

/// The headers of which a redirect as GET takes over those that say who asks, and no others.
[[nodiscard]] platform::HTTPHeaders headersForRedirectAsGet(const platform::HTTPHeaders& headers);
/// The headers without those that concern only the origin that is left.
[[nodiscard]] platform::HTTPHeaders headersForOtherOrigin(const platform::HTTPHeaders& headers);

/// Where a "Location" leads from `url`. Servers write blanks and bare UTF-8 into it; those are
/// escaped. Nothing: it is no address at all.
[[nodiscard]] std::optional<platform::Url> redirectTarget(const platform::Url& url,
                                                          const QString& location);

/// Whether a request can be made to `url` at all: only http and https with a host. Everything else,
/// files of this machine above all, must not be reached because a server says so.
[[nodiscard]] bool isRequestable(const platform::Url& url);

}  // namespace http
