#include "http/http_network_queue.h"

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
    _operations.setSuspended(true);
}

HTTPNetworkQueue::~HTTPNetworkQueue() = default;

std::shared_ptr<HTTPNetworkQueue> HTTPNetworkQueue::queue() {
    return std::shared_ptr<HTTPNetworkQueue>(new HTTPNetworkQueue);
}

std::shared_ptr<HTTPNetworkQueue> HTTPNetworkQueue::copy() const {
    auto made = queue();
    {
        const std::scoped_lock guard(_delegateLock);
        made->_delegate = _delegate;
        made->_selectors = _selectors;
    }
    made->setUploadProgressDelegate(_upload.indicator);
    made->setDownloadProgressDelegate(_download.indicator);
    made->_shouldCancelAllRequestsOnFailure = _shouldCancelAllRequestsOnFailure;
    made->_showAccurateProgress = _showAccurateProgress;
    made->_userInfo = _userInfo;
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
    ++_requestsCount;
    if (_showAccurateProgress) {
        preparePreciseProgress(*request);
    } else {
        ++_download.total;
        ++_upload.total;
    }
    if (request->shouldResetUploadProgress()) {
        _upload.reset();
        request->setShouldResetUploadProgress(false);
    }
    request->setShowAccurateProgress(_showAccurateProgress);
    request->setQueue(shared_from_this());
    _operations.addOperation(request);
    return std::nullopt;
}

void HTTPNetworkQueue::preparePreciseProgress(HTTPRequest& request) {
    request.buildPostBody();
    // Once the queue runs, a probe would come too late to be any use.
    if (request.requestMethod() == u"GET"_s && _operations.isSuspended()) {
        const auto probe = request.HEADRequest();
        addHEADOperation(probe);
        request.addDependency(probe);
        if (request.shouldResetDownloadProgress()) {
            _download.reset();
            request.setShouldResetDownloadProgress(false);
        }
    }
    _upload.total += request.postLength();
}

void HTTPNetworkQueue::addHEADOperation(const std::shared_ptr<HTTPRequest>& probe) {
    probe->setRequestMethod(u"HEAD"_s);
    probe->setQueuePriority(probePriority);
    probe->setShowAccurateProgress(true);
    probe->setQueue(shared_from_this());
    _operations.addOperation(probe);
}

void HTTPNetworkQueue::reset() {
    cancelAllOperations();
    setDelegate(nullptr);
    _upload.indicator = nullptr;
    _download.indicator = nullptr;
    {
        const std::scoped_lock guard(_delegateLock);
        Selectors kept;
        kept.requestWillRedirectSelector = std::move(_selectors.requestWillRedirectSelector);
        _selectors = std::move(kept);
    }
    _operations.setSuspended(true);
}

void HTTPNetworkQueue::cancelAllOperations() {
    for (Progress* progress : {&_upload, &_download})
        progress->soFar = progress->total = 0;
    _operations.cancelAllOperations();
}

// Receivers.

void HTTPNetworkQueue::setDelegate(HTTPRequestDelegate* delegate) {
    const std::scoped_lock guard(_delegateLock);
    _delegate = delegate;
}

HTTPRequestDelegate* HTTPNetworkQueue::delegate() const {
    const std::scoped_lock guard(_delegateLock);
    return _delegate;
}

void HTTPNetworkQueue::setSelectors(Selectors selectors) {
    const std::scoped_lock guard(_delegateLock);
    _selectors = std::move(selectors);
}

void HTTPNetworkQueue::setUploadProgressDelegate(HTTPProgressDelegate* delegate) {
    _upload.indicator = delegate;
    _upload.reset();
}

HTTPProgressDelegate* HTTPNetworkQueue::uploadProgressDelegate() const {
    return _upload.indicator;
}

void HTTPNetworkQueue::setDownloadProgressDelegate(HTTPProgressDelegate* delegate) {
    _download.indicator = delegate;
    _download.reset();
}

HTTPProgressDelegate* HTTPNetworkQueue::downloadProgressDelegate() const {
    return _download.indicator;
}

// What requests tell.

HTTPRequestDelegate::Capabilities HTTPNetworkQueue::capabilities() const {
    const std::scoped_lock guard(_delegateLock);
    if (_delegate == nullptr)
        return {};
    const Capabilities own = _delegate->capabilities();
    Capabilities passedOn;
    passedOn.confirmsRedirects = static_cast<bool>(_selectors.requestWillRedirectSelector);
    passedOn.suppliesCredentials = own.suppliesCredentials;
    passedOn.suppliesProxyCredentials = own.suppliesProxyCredentials;
    return passedOn;
}

template <typename Selector, typename... Arguments>
void HTTPNetworkQueue::call(Selector Selectors::*selector, Arguments&... arguments) const {
    Selector called;
    {
        const std::scoped_lock guard(_delegateLock);
        if (_delegate != nullptr)
            called = _selectors.*selector;
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
    --_requestsCount;
    call(selector, request);
    if (_requestsCount == 0)
        call(&Selectors::queueDidFinishSelector, *this);
}

void HTTPNetworkQueue::requestFinished(HTTPRequest& request) {
    requestEnded(request, &Selectors::requestDidFinishSelector);
}

void HTTPNetworkQueue::requestFailed(HTTPRequest& request) {
    requestEnded(request, &Selectors::requestDidFailSelector);
    if (_shouldCancelAllRequestsOnFailure && _requestsCount > 0)
        cancelAllOperations();
}

void HTTPNetworkQueue::requestDidReceiveBytes(HTTPRequest&, std::int64_t amount) {
    _download.moved(amount);
}

void HTTPNetworkQueue::requestDidSendBytes(HTTPRequest&, std::int64_t amount) {
    _upload.moved(amount);
}

void HTTPNetworkQueue::requestIncrementDownloadSizeBy(HTTPRequest&, std::int64_t amount) {
    _download.total += static_cast<std::uint64_t>(amount);
}

void HTTPNetworkQueue::requestIncrementUploadSizeBy(HTTPRequest&, std::int64_t amount) {
    _upload.total += static_cast<std::uint64_t>(amount);
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
