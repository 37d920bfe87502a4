#pragma once

#include "http/request/request_parts.h"

namespace http {

class HTTPRequest;
class RequestRun;

/// How one request uses its cache, if it has one: to be answered without a send, to ask the server
/// only whether something changed, to survive a failure, to keep what came.
///
/// The request's loop, under its lock.
class RequestCache {
public:
    RequestCache(const HTTPRequest& request, RequestParts parts, RequestRun& run);

    /// Before a send. True: the request has been answered; else conditional headers may have been
    /// added.
    [[nodiscard]] bool answerBeforeSend();
    /// After the head of a response. True: the request has been answered.
    [[nodiscard]] bool answerAfterHead();
    /// Instead of a failure. True: the request has been answered.
    [[nodiscard]] bool answerFailure();
    /// Keeps a response that has come to its end.
    void store();

private:
    void addConditions();
    void useDataFromCache();
    void takeCachedResponse();

    const HTTPRequest& _request;
    RequestParts _parts;
    RequestRun& _run;
};

}  // namespace http
