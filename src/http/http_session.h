#pragma once

#include <memory>

#include "platform/base/clock.h"
#include "platform/net/proxies/system_proxies.h"

namespace http {

class SharedState;

/// What all requests of the process share: the request thread, the queue on which they start, the
/// bandwidth account, the connections kept open, the cookies and credentials of this run.
///
/// There is one at a time, made by the composition root (after the main run loop) or by a test; a
/// request can be made only while it lives. The thread begins with the first request. The end
/// drops every transfer without a word, joins the thread and forgets all; a request that outlives
/// the session does nothing any more.
///
/// Main thread.
class HTTPSession {
public:
    /// `proxies`: what requests that were given no proxy ask; null: the system's.
    explicit HTTPSession(platform::Clock& clock,
                         std::unique_ptr<platform::SystemProxies> proxies = nullptr);
    ~HTTPSession();
    HTTPSession(const HTTPSession&) = delete;
    HTTPSession& operator=(const HTTPSession&) = delete;

private:
    std::shared_ptr<SharedState> shared_;
};

}  // namespace http
