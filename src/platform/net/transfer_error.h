#pragma once

#include <curl/curl.h>

#include "platform/base/error.h"
#include "platform/net/http_read_stream.h"

namespace platform {

/// The response broke a rule; `why` in plain words.
[[nodiscard]] Error badResponseError(const QString& why);
/// The server hung up on a connection that it had kept open, before it answered.
[[nodiscard]] Error brokenReusedConnectionError();
/// It did so in the middle of a body, or somebody on the way did.
[[nodiscard]] Error unannouncedEndError();
/// The proxy answered CONNECT with this.
[[nodiscard]] Error proxyRefusalError(const HTTPProxy& proxy, const HTTPResponseHead& answer);
/// What a result that is not CURLE_OK means. `reason`: libcurl's own words, possibly empty.
[[nodiscard]] Error errorForResult(CURLcode result, const QString& reason);

}  // namespace platform
