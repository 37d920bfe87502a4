#pragma once

#include <curl/curl.h>

#include "platform/base/error.h"
#include "platform/net/http_read_stream.h"

namespace platform {

/// The response broke a rule; `why` in plain words.
[[nodiscard]] Error badResponseError(const QString& why);
/// The same of a 206 that does not answer what was asked.
[[nodiscard]] Error wrongPartError(const QString& why);
/// The server hung up on a connection that it had kept open, before it answered.
[[nodiscard]] Error brokenReusedConnectionError();
/// It did so in the middle of a body, or somebody on the way did.
[[nodiscard]] Error unannouncedEndError();
/// The proxy answered CONNECT with this.
[[nodiscard]] Error proxyRefusalError(const HTTPProxy& proxy, const HTTPResponseHead& answer);
/// The body ended before it was as long as it says.
[[nodiscard]] Error cutShortError();

/// How a transfer ended, in libcurl's terms.
struct TransferResult {
    CURLcode code = CURLE_OK;
    QString reason;         ///< libcurl's own words, possibly empty.
    int systemError = 0;    ///< errno of the last attempt to connect; 0: not known.
    long verification = 0;  ///< Of the server's certificate, as OpenSSL numbers the reasons.
};
/// What a result that is not CURLE_OK means.
[[nodiscard]] Error errorForResult(const TransferResult& result);

}  // namespace platform
