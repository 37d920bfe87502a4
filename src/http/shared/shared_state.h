#pragma once

#include <QString>
#include <memory>
#include <mutex>

#include "http/operation_queue.h"
#include "http/shared/bandwidth_account.h"
#include "http/shared/connection_table.h"
#include "http/shared/request_thread.h"
#include "http/shared/session_cookies.h"
#include "http/shared/session_credentials.h"
#include "http/shared/waiting_requests.h"
#include "platform/base/clock.h"
#include "platform/net/proxies/system_proxies.h"

namespace http {

class ResponseCache;

/// What new requests begin with. Any thread.
class RequestDefaults {
public:
    [[nodiscard]] platform::Seconds timeOutSeconds() const;
    void setTimeOutSeconds(platform::Seconds seconds);
    /// Built once, when nothing has been set.
    [[nodiscard]] QString userAgentString();
    void setUserAgentString(const QString& text);
    [[nodiscard]] std::shared_ptr<ResponseCache> cache() const;
    void setCache(std::shared_ptr<ResponseCache> cache);

private:
    mutable std::mutex lock_;  ///< Guards all that follows.
    platform::Seconds timeOutSeconds_ = 10;
    std::optional<QString> userAgentString_;
    std::shared_ptr<ResponseCache> cache_;
};

/// The parts that all requests of a session share. Each has its own lock; they are named after what
/// they guard: the connection lock (ConnectionTable), the bandwidth lock (BandwidthAccount), the
/// session cookie lock (SessionCookies), the session credential lock (SessionEntries), the waiting
/// lock (WaitingRequests) and those below. docs/architecture.md has the order in which they are
/// taken.
///
/// A request keeps this alive, so it may outlive the session; what it then posts to the thread is
/// dropped. Any thread.
class SharedState {
public:
    explicit SharedState(platform::Clock& clock);

    /// Of the session that lives; the program is wired wrongly if there is none.
    [[nodiscard]] static std::shared_ptr<SharedState> current();
    /// Null: the session has ended.
    static void install(std::shared_ptr<SharedState> state);

    platform::Clock& clock;
    std::unique_ptr<const platform::SystemProxies> proxies;
    BandwidthAccount bandwidth;
    ConnectionTable connections;
    SessionCookies cookies;
    SessionEntries sessionCredentials;
    SessionEntries sessionProxyCredentials;
    WaitingRequests waitingForCredentials;
    /// Held while a request looks for credentials, so that of several that have met one challenge
    /// the later ones find what the first has stored. Not held while a user answers.
    std::recursive_mutex delegateAuthenticationLock;
    RequestDefaults defaults;
    /// Guards the queueing of progress and the end of a response, across requests.
    std::recursive_mutex progressLock;
    OperationQueue sharedQueue;
    RequestThread thread;
};

}  // namespace http
