#pragma once

#include <QVariantMap>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "http/http_request_delegate.h"
#include "http/operation_queue.h"
#include "platform/base/error.h"

namespace http {

/// A batch of requests with one combined progress and one end. A new queue is suspended: add the
/// requests, then `go`. For an accurate progress each GET that is added before is preceded by a
/// HEAD, which tells how long the response will be.
///
/// The requests keep it alive until they have ended; a queue that is given up before must be
/// `reset`. Main thread.
class HTTPNetworkQueue final : public HTTPRequestQueueDelegate,
                               public std::enable_shared_from_this<HTTPNetworkQueue> {
public:
    using RequestSelector = std::function<void(HTTPRequest&)>;

    /// What is called while there is a delegate; none is set at first.
    struct Selectors {
        RequestSelector requestDidStartSelector;
        std::function<void(HTTPRequest&, const HTTPResponse&)>
            requestDidReceiveResponseHeadersSelector;
        /// Takes redirects over, as HTTPRequestDelegate::Capabilities describes.
        std::function<void(HTTPRequest&, const platform::Url&)> requestWillRedirectSelector;
        RequestSelector requestDidFinishSelector;
        RequestSelector requestDidFailSelector;
        /// After the last request, however it ended.
        std::function<void(HTTPNetworkQueue&)> queueDidFinishSelector;
    };

    [[nodiscard]] static std::shared_ptr<HTTPNetworkQueue> queue();
    ~HTTPNetworkQueue() override;
    /// A new queue with the same receivers and settings, and no requests.
    [[nodiscard]] std::shared_ptr<HTTPNetworkQueue> copy() const;

    /// Nothing: added. An error, whose domain is its name: it is no HTTPRequest.
    std::optional<platform::Error> addOperation(const std::shared_ptr<Operation>& operation);
    /// Adds a probe, which does not count among the requests.
    void addHEADOperation(const std::shared_ptr<HTTPRequest>& probe);
    void go() { operations_.setSuspended(false); }
    /// Cancels all, forgets delegate, progress delegates and selectors but the one for redirects,
    /// and suspends.
    void reset();
    /// Forgets all amounts.
    void cancelAllOperations();
    [[nodiscard]] OperationQueue& operationQueue() { return operations_; }
    /// Added and not yet ended.
    [[nodiscard]] int requestsCount() const { return requestsCount_; }

    /// Not owned. Also asked for credentials, if it can supply them.
    void setDelegate(HTTPRequestDelegate* delegate);
    [[nodiscard]] HTTPRequestDelegate* delegate() const;
    void setSelectors(Selectors selectors);
    /// Not owned; set back to 0 of 1.
    void setUploadProgressDelegate(HTTPProgressDelegate* delegate);
    [[nodiscard]] HTTPProgressDelegate* uploadProgressDelegate() const;
    void setDownloadProgressDelegate(HTTPProgressDelegate* delegate);
    [[nodiscard]] HTTPProgressDelegate* downloadProgressDelegate() const;

    /// Yes at first.
    void setShouldCancelAllRequestsOnFailure(bool cancels) {
        shouldCancelAllRequestsOnFailure_ = cancels;
    }
    [[nodiscard]] bool shouldCancelAllRequestsOnFailure() const {
        return shouldCancelAllRequestsOnFailure_;
    }
    /// No at first. Counts for requests that are added later.
    void setShowAccurateProgress(bool shows) { showAccurateProgress_ = shows; }
    [[nodiscard]] bool showAccurateProgress() const { return showAccurateProgress_; }
    void setUserInfo(QVariantMap info) { userInfo_ = std::move(info); }
    [[nodiscard]] const QVariantMap& userInfo() const { return userInfo_; }
    [[nodiscard]] std::uint64_t bytesUploadedSoFar() const { return upload_.soFar; }
    [[nodiscard]] std::uint64_t totalBytesToUpload() const { return upload_.total; }
    [[nodiscard]] std::uint64_t bytesDownloadedSoFar() const { return download_.soFar; }
    [[nodiscard]] std::uint64_t totalBytesToDownload() const { return download_.total; }

    // For its requests.

    [[nodiscard]] Capabilities capabilities() const override;
    void requestStarted(HTTPRequest& request) override;
    void requestDidReceiveResponseHeaders(HTTPRequest& request,
                                          const HTTPResponse& response) override;
    void requestWillRedirectToURL(HTTPRequest& request, const platform::Url& url) override;
    void requestFinished(HTTPRequest& request) override;
    void requestFailed(HTTPRequest& request) override;
    void requestDidReceiveBytes(HTTPRequest& request, std::int64_t amount) override;
    void requestDidSendBytes(HTTPRequest& request, std::int64_t amount) override;
    void requestIncrementDownloadSizeBy(HTTPRequest& request, std::int64_t amount) override;
    void requestIncrementUploadSizeBy(HTTPRequest& request, std::int64_t amount) override;
    void authenticationNeededForRequest(HTTPRequest& request) override;
    void proxyAuthenticationNeededForRequest(HTTPRequest& request) override;

private:
    /// Amounts in one direction, and who is shown them.
    struct Progress {
        std::uint64_t soFar = 0;
        std::uint64_t total = 0;
        HTTPProgressDelegate* indicator = nullptr;

        void reset() const;
        void moved(std::int64_t amount);
    };

    HTTPNetworkQueue();
    void preparePreciseProgress(HTTPRequest& request);
    void requestEnded(HTTPRequest& request, RequestSelector Selectors::*selector);
    template <typename Selector, typename... Arguments>
    void call(Selector Selectors::*selector, Arguments&... arguments) const;

    OperationQueue operations_;
    mutable std::mutex delegateLock_;  ///< Guards the two below: requests look at them at any time.
    HTTPRequestDelegate* delegate_ = nullptr;
    Selectors selectors_;
    Progress upload_;
    Progress download_;
    bool shouldCancelAllRequestsOnFailure_ = true;
    bool showAccurateProgress_ = false;
    int requestsCount_ = 0;
    QVariantMap userInfo_;
};

}  // namespace http
