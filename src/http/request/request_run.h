#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "http/extras/request_extras.h"
#include "http/request/authentication.h"
#include "http/request/body_delivery.h"
#include "http/request/connection_lease.h"
#include "http/request/proxy_configuration.h"
#include "http/request/request_body.h"
#include "http/request/request_header_builder.h"
#include "http/request/request_parts.h"
#include "http/request/request_sender.h"
#include "http/request/response_reader.h"
#include "http/request/status_watch.h"
#include "http/request/transfer_stream.h"
#include "http/shared/transfer_loop.h"
#include "platform/base/error.h"
#include "platform/net/http_read_stream.h"

namespace http {

class HTTPRequest;
class RequestNotifier;
class SharedState;
struct RequestState;

/// The course of one request, from its start over every send to its one end.
class RequestRun final : private TransferLoop::Client {
public:
    RequestRun(HTTPRequest& request, RequestState& state, RequestNotifier& notifier,
               std::shared_ptr<SharedState> shared, std::function<void()> announceFinished);
    ~RequestRun();
    RequestRun(const RequestRun&) = delete;
    RequestRun& operator=(const RequestRun&) = delete;

    // Any thread.

    void enqueue();
    void start();
    void runSynchronously();
    void cancel();
    void redirectToURL(const platform::Url& url);
    void retryUsingSuppliedCredentials();
    void cancelAuthentication();
    /// The persistent store has answered.
    void resumeWithSavedCredentials(bool forProxy, std::optional<platform::HTTPCredentials> found);
    /// Another request has been let in.
    void resumeWithSessionCredentials();

    // The request's loop or, before the start, its caller; under the request's lock.

    void setURL(const platform::Url& url);
    void setRequestMethod(const QString& method);
    [[nodiscard]] RequestBody& body() { return body_; }
    [[nodiscard]] std::uint32_t connectionID() const { return connection_.connectionID(); }
    /// It looks for no proxy, and reports on the thread where things happen.
    void becomePACFileRequest();
    [[nodiscard]] bool buildPostBody() { return sender_.buildPostBody(); }

    // The request's loop, under its lock; for the parts of the request.

    void startRequest();
    void handleNetworkEvent(platform::HTTPReadStream::Event event);
    void performThrottling();
    void cancelLoad();
    void failWithError(const platform::Error& error);
    void requestFinished();
    void markAsFinished();
    /// Sends once more on a new connection, once at most; where it need not count, once more for
    /// each address. False: not any more.
    [[nodiscard]] bool retryUsingNewConnection(bool counts);
    /// Follows the redirect that waits, or lets the delegate decide; on the loop's next turn.
    void followRedirectLater();
    /// What a response, this one's or its probe's, says of the body's length. Nothing: not known.
    /// `isReported`: the totals of progress grow by it.
    void noteContentLength(std::optional<std::uint64_t> length, bool isReported);
    /// Its probe has failed, and so has this request.
    void failWithErrorOfProbe(const platform::Error& error);
    /// Ahead of its turn, for a probe that asks with the same headers.
    void buildRequestHeaders();
    /// Whether receivers are told of anything but the end: not once it has failed, and never of a
    /// probe.
    [[nodiscard]] bool isHeard() const;
    /// Runs `step` on the request's loop while the request lives. Any thread.
    void perform(std::function<void()> step);
    [[nodiscard]] BodyDelivery& delivery() { return delivery_; }
    [[nodiscard]] Authentication& authentication() { return authentication_; }
    [[nodiscard]] const Authentication& authentication() const { return authentication_; }
    [[nodiscard]] RequestExtras& extras() { return extras_; }
    [[nodiscard]] ResponseReader& reader() { return reader_; }
    [[nodiscard]] StatusWatch& statusWatch() { return statusWatch_; }
    /// Null before the start.
    [[nodiscard]] const std::shared_ptr<TransferLoop>& loopInUse() const { return loop_; }

private:
    void loopWillEnd() override;

    void perform(void (RequestRun::*step)()) {
        perform([this, step] { (this->*step)(); });
    }
    [[nodiscard]] std::shared_ptr<TransferLoop> loop();

    void main();
    void followRedirect();
    void performRedirect();
    void dropTransfer();
    void cancelOnRequestThread();
    void failAuthentication();
    void resumeAuthentication();
    [[nodiscard]] bool waitsForStore(platform::HTTPReadStream::Event event);

    HTTPRequest& request_;
    RequestState& state_;
    RequestNotifier& notifier_;
    std::shared_ptr<SharedState> shared_;
    std::function<void()> announceFinished_;
    std::shared_ptr<TransferLoop> loop_;  ///< Null before the start.

    int freeRetryAfter_ = -1;  ///< So many redirects.

    RequestBody body_;
    RequestHeaderBuilder headers_;
    ConnectionLease connection_;
    TransferStream stream_;
    RequestParts parts_;
    RequestSender sender_;
    StatusWatch statusWatch_;
    BodyDelivery delivery_;
    ResponseReader reader_;
    RequestExtras extras_;
    Authentication authentication_;
    ProxyConfiguration proxies_;
};

}  // namespace http
