#pragma once

#include <QString>
#include <optional>

#include "platform/net/http_message.h"

namespace http {

struct RequestOptions;

enum class RedirectKind {
    None,
    AsGet,        ///< No body, and hardly any header, travels on.
    KeepsMethod,  ///< Method, body and headers travel on.
};

/// What a status means for a response with a "Location" to a request with these options.
[[nodiscard]] RedirectKind redirectKind(int statusCode, const RequestOptions& options);

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
