#pragma once

#include <optional>

#include "http/request/request_body.h"
#include "http/request/request_parts.h"
#include "http/request/transfer_stream.h"

namespace http {

class HTTPRequest;
class RequestRun;

/// Makes the message of a request, and sends it: once, and again for every authentication round
/// and retry.
///
/// The request's loop, under its lock.
class RequestSender {
public:
    RequestSender(HTTPRequest& request, RequestParts parts, RequestRun& run);

    /// Builds body, headers and message. False: the request has failed or been answered.
    [[nodiscard]] bool prepare();
    /// Fixes the body's length, and with it the method. False: the request has failed.
    [[nodiscard]] bool buildPostBody();
    /// Sends the message as it is.
    void startRequest();

private:
    void makeMessage();
    void resetForSend();
    [[nodiscard]] bool openStream(RequestBody::Opened body);
    [[nodiscard]] TransferStream::Setup setup(RequestBody::Opened body) const;
    [[nodiscard]] platform::TLSSettings tlsSettings() const;
    [[nodiscard]] platform::HTTPProxy proxy() const;

    HTTPRequest& request_;
    RequestParts parts_;
    RequestRun& run_;
};

}  // namespace http
