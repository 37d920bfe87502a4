#pragma once

#include "http/request/request_parts.h"

namespace http {

class HTTPRequest;
class RequestRun;

/// Looks at a running send four times a second: lets it rest under the bandwidth limit, counts
/// what went up, reports progress, and ends or repeats a send that has been silent for too long.
///
/// The request's loop, under its lock.
class StatusWatch {
public:
    StatusWatch(HTTPRequest& request, RequestParts parts, RequestRun& run);

    void start();
    void stop();
    void checkRequestStatus();

private:
    [[nodiscard]] bool hasTimedOut() const;
    void timeOut();
    void countUpload();

    HTTPRequest& request_;
    RequestParts parts_;
    RequestRun& run_;
};

}  // namespace http
