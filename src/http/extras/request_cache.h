#pragma once

#include "http/request/request_parts.h"

namespace http {

class HTTPRequest;
class ProgressReporter;
class RequestRun;

/// How one request uses its cache, if it has one: to be answered without a send, to ask the server
/// only whether something changed, to survive a failure, to keep what came.
///
/// The request's loop, under its lock.
class RequestCache {
public:
    RequestCache(const HTTPRequest& request, RequestParts parts, RequestRun& run,
                 ProgressReporter& progress);

    /// Before a send. True: the request has been answered; else conditional headers may have been
    /// added.
    [[nodiscard]] bool answerBeforeSend();
    /// After the head of a response. True: the request has been answered.
    [[nodiscard]] bool answerAfterHead();
    /// Instead of a failure. True: the request has been answered.
    [[nodiscard]] bool answerFailure();
    /// Whether the answer in hand comes out of the cache.
    [[nodiscard]] bool hasAnswered() const { return hasAnswered_; }
    /// Another request is to be made.
    void forgetAnswer() { hasAnswered_ = false; }
    /// Keeps a response that has come to its end.
    void store();

private:
    void addConditions();
    void useDataFromCache();
    void takeCachedResponse();

    const HTTPRequest& request_;
    RequestParts parts_;
    RequestRun& run_;
    ProgressReporter& progress_;
    bool hasAnswered_ = false;
};

}  // namespace http
