#include "http/extras/http_network_queue.h"

#include "http/http_request.h"

namespace http {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int probePriority = 10;

}  // namespace

void HTTPNetworkQueue::Progress::reset() const {
    if (indicator == nullptr)
        return;
    indicator->setMaxValue(1.0);
    indicator->setDoubleValue(0.0);
}

void HTTPNetworkQueue::Progress::moved(std::int64_t amount) {
    soFar += static_cast<std::uint64_t>(amount);
    if (indicator != nullptr)
        indicator->setDoubleValue(static_cast<double>(soFar) / static_cast<double>(total));
}

HTTPNetworkQueue::HTTPNetworkQueue() {
    operations_.setSuspended(true);
}

HTTPNetworkQueue::~HTTPNetworkQueue() = default;

std::shared_ptr<HTTPNetworkQueue> HTTPNetworkQueue::queue() {
    return std::shared_ptr<HTTPNetworkQueue>(new HTTPNetworkQueue);
}

std::shared_ptr<HTTPNetworkQueue> HTTPNetworkQueue::copy() const {
    auto made = queue();
    {
        const std::scoped_lock guard(delegateLock_);
        made->delegate_ = delegate_;
        made->selectors_ = selectors_;
    }
    made->setUploadProgressDelegate(upload_.indicator);
    made->setDownloadProgressDelegate(download_.indicator);
    made->shouldCancelAllRequestsOnFailure_ = shouldCancelAllRequestsOnFailure_;
    made->showAccurateProgress_ = showAccurateProgress_;
    made->userInfo_ = userInfo_;
    return made;
}

// Requests.

std::optional<platform::Error> HTTPNetworkQueue::addOperation(
    const std::shared_ptr<Operation>& operation) {
    const auto request = std::dynamic_pointer_cast<HTTPRequest>(operation);
    if (request == nullptr)
        return platform::Error{u"AttemptToAddInvalidRequest"_s, 0,
                               u"Attempted to add an object that was not an HTTPRequest to an "
                               "HTTPNetworkQueue"_s,
                               nullptr};
    ++requestsCount_;
    if (showAccurateProgress_) {
        preparePreciseProgress(*request);
    } else {
        ++download_.total;
        ++upload_.total;
    }
    if (request->shouldResetUploadProgress()) {
        upload_.reset();
        request->setShouldResetUploadProgress(false);
    }
    request->setShowAccurateProgress(showAccurateProgress_);
    request->setQueue(shared_from_this());
    operations_.addOperation(request);
    return std::nullopt;
}

void HTTPNetworkQueue::preparePreciseProgress(HTTPRequest& request) {
    request.buildPostBody();
    // Once the queue runs, a probe would come too late to be any use.
    if (request.requestMethod() == u"GET"_s && operations_.isSuspended()) {
        const auto probe = request.HEADRequest();
        addHEADOperation(probe);
        request.addDependency(probe);
        if (request.shouldResetDownloadProgress()) {
            download_.reset();
            request.setShouldResetDownloadProgress(false);
        }
    }
    upload_.total += request.postLength();
}

void HTTPNetworkQueue::addHEADOperation(const std::shared_ptr<HTTPRequest>& probe) {
    probe->setRequestMethod(u"HEAD"_s);
    probe->setQueuePriority(probePriority);
    probe->setShowAccurateProgress(true);
    probe->setQueue(shared_from_this());
    operations_.addOperation(probe);
}

void HTTPNetworkQueue::reset() {
    cancelAllOperations();
    setDelegate(nullptr);
    upload_.indicator = nullptr;
    download_.indicator = nullptr;
    {
        const std::scoped_lock guard(delegateLock_);
        Selectors kept;
        kept.requestWillRedirectSelector = std::move(selectors_.requestWillRedirectSelector);
        selectors_ = std::move(kept);
    }
    operations_.setSuspended(true);
}

void HTTPNetworkQueue::cancelAllOperations() {
    for (Progress* progress : {&upload_, &download_})
        progress->soFar = progress->total = 0;
    operations_.cancelAllOperations();
}

// Receivers.

void HTTPNetworkQueue::setDelegate(HTTPRequestDelegate* delegate) {
    const std::scoped_lock guard(delegateLock_);
    delegate_ = delegate;
}

HTTPRequestDelegate* HTTPNetworkQueue::delegate() const {
    const std::scoped_lock guard(delegateLock_);
    return delegate_;
}

void HTTPNetworkQueue::setSelectors(Selectors selectors) {
    const std::scoped_lock guard(delegateLock_);
    selectors_ = std::move(selectors);
}

void HTTPNetworkQueue::setUploadProgressDelegate(HTTPProgressDelegate* delegate) {
    upload_.indicator = delegate;
    upload_.reset();
}

HTTPProgressDelegate* HTTPNetworkQueue::uploadProgressDelegate() const {
    return upload_.indicator;
}

void HTTPNetworkQueue::setDownloadProgressDelegate(HTTPProgressDelegate* delegate) {
    download_.indicator = delegate;
    download_.reset();
}

HTTPProgressDelegate* HTTPNetworkQueue::downloadProgressDelegate() const {
    return download_.indicator;
}

// What requests tell.

HTTPRequestDelegate::Capabilities HTTPNetworkQueue::capabilities() const {
    const std::scoped_lock guard(delegateLock_);
    if (delegate_ == nullptr)
        return {};
    const Capabilities own = delegate_->capabilities();
    Capabilities passedOn;
    passedOn.confirmsRedirects = static_cast<bool>(selectors_.requestWillRedirectSelector);
    passedOn.suppliesCredentials = own.suppliesCredentials;
    passedOn.suppliesProxyCredentials = own.suppliesProxyCredentials;
    return passedOn;
}

template <typename Selector, typename... Arguments>
void HTTPNetworkQueue::call(Selector Selectors::*selector, Arguments&... arguments) const {
    Selector called;
    {
        const std::scoped_lock guard(delegateLock_);
        if (delegate_ != nullptr)
            called = selectors_.*selector;
    }
    if (called)
        called(arguments...);
}

void HTTPNetworkQueue::requestStarted(HTTPRequest& request) {
    call(&Selectors::requestDidStartSelector, request);
}

void HTTPNetworkQueue::requestDidReceiveResponseHeaders(HTTPRequest& request,
                                                        const HTTPResponse& response) {
    call(&Selectors::requestDidReceiveResponseHeadersSelector, request, response);
}

void HTTPNetworkQueue::requestWillRedirectToURL(HTTPRequest& request, const platform::Url& url) {
    call(&Selectors::requestWillRedirectSelector, request, url);
}

void HTTPNetworkQueue::requestEnded(HTTPRequest& request, RequestSelector Selectors::*selector) {
    --requestsCount_;
    call(selector, request);
    if (requestsCount_ == 0)
        call(&Selectors::queueDidFinishSelector, *this);
}

void HTTPNetworkQueue::requestFinished(HTTPRequest& request) {
    requestEnded(request, &Selectors::requestDidFinishSelector);
}

void HTTPNetworkQueue::requestFailed(HTTPRequest& request) {
    requestEnded(request, &Selectors::requestDidFailSelector);
    if (shouldCancelAllRequestsOnFailure_ && requestsCount_ > 0)
        cancelAllOperations();
}

void HTTPNetworkQueue::requestDidReceiveBytes(HTTPRequest&, std::int64_t amount) {
    download_.moved(amount);
}

void HTTPNetworkQueue::requestDidSendBytes(HTTPRequest&, std::int64_t amount) {
    upload_.moved(amount);
}

void HTTPNetworkQueue::requestIncrementDownloadSizeBy(HTTPRequest&, std::int64_t amount) {
    download_.total += static_cast<std::uint64_t>(amount);
}

void HTTPNetworkQueue::requestIncrementUploadSizeBy(HTTPRequest&, std::int64_t amount) {
    upload_.total += static_cast<std::uint64_t>(amount);
}

void HTTPNetworkQueue::authenticationNeededForRequest(HTTPRequest& request) {
    if (HTTPRequestDelegate* const target = delegate())
        target->authenticationNeededForRequest(request);
}

void HTTPNetworkQueue::proxyAuthenticationNeededForRequest(HTTPRequest& request) {
    if (HTTPRequestDelegate* const target = delegate())
        target->proxyAuthenticationNeededForRequest(request);
}

}  // namespace http
