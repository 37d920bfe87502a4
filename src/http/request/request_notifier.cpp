#include "http/request/request_notifier.h"

#include <utility>

#include "http/http_request.h"
#include "http/request/mailbox.h"
#include "platform/base/run_loop.h"

namespace http {

RequestNotifier::RequestNotifier(HTTPRequest& request, std::recursive_mutex& cancelledLock)
    : _request(request), _cancelledLock(cancelledLock), _mailbox(std::make_shared<Mailbox>()) {}

RequestNotifier::~RequestNotifier() {
    clearReceivers();
}

void RequestNotifier::setDelegate(HTTPRequestDelegate* delegate) {
    const std::scoped_lock guard(_cancelledLock);
    _delegate = delegate;
}

HTTPRequestDelegate* RequestNotifier::delegate() const {
    const std::scoped_lock guard(_cancelledLock);
    return _delegate;
}

void RequestNotifier::setQueue(std::shared_ptr<HTTPRequestQueueDelegate> queue) {
    const std::scoped_lock guard(_cancelledLock);
    _queue.swap(queue);
}

std::shared_ptr<HTTPRequestQueueDelegate> RequestNotifier::queue() const {
    const std::scoped_lock guard(_cancelledLock);
    return _queue;
}

void RequestNotifier::setProgressDelegate(ProgressField field, HTTPProgressDelegate* delegate) {
    {
        const std::scoped_lock guard(_cancelledLock);
        this->*field = delegate;
    }
    if (delegate != nullptr)
        send([this, field] {
            tell(field, [](HTTPProgressDelegate& target) { target.setMaxValue(1.0); });
        });
}

HTTPProgressDelegate* RequestNotifier::progressDelegate(ProgressField field) const {
    const std::scoped_lock guard(_cancelledLock);
    return this->*field;
}

void RequestNotifier::setUploadProgressDelegate(HTTPProgressDelegate* delegate) {
    setProgressDelegate(&RequestNotifier::_uploadProgressDelegate, delegate);
}

HTTPProgressDelegate* RequestNotifier::uploadProgressDelegate() const {
    return progressDelegate(&RequestNotifier::_uploadProgressDelegate);
}

void RequestNotifier::setDownloadProgressDelegate(HTTPProgressDelegate* delegate) {
    setProgressDelegate(&RequestNotifier::_downloadProgressDelegate, delegate);
}

HTTPProgressDelegate* RequestNotifier::downloadProgressDelegate() const {
    return progressDelegate(&RequestNotifier::_downloadProgressDelegate);
}

void RequestNotifier::setBlocks(RequestBlocks blocks) {
    const std::scoped_lock guard(_cancelledLock);
    _blocks = std::make_shared<const RequestBlocks>(std::move(blocks));
}

RequestNotifier::Blocks RequestNotifier::blocks() const {
    const std::scoped_lock guard(_cancelledLock);
    return _blocks;
}

void RequestNotifier::setSelectors(DelegateSelectors selectors) {
    const std::scoped_lock guard(_cancelledLock);
    _selectors = std::make_shared<const DelegateSelectors>(std::move(selectors));
}

RequestNotifier::Selectors RequestNotifier::selectors() const {
    const std::scoped_lock guard(_cancelledLock);
    return _selectors;
}

void RequestNotifier::clearReceivers() {
    Blocks blocks;
    Selectors selectors;
    std::shared_ptr<HTTPRequestQueueDelegate> queue;
    {
        const std::scoped_lock guard(_cancelledLock);
        _delegate = nullptr;
        _uploadProgressDelegate = nullptr;
        _downloadProgressDelegate = nullptr;
        _queue.swap(queue);
        _blocks.swap(blocks);
        _selectors.swap(selectors);
    }
    // What they hold may belong to the main thread, so they are let go there.
    const bool isEmpty = blocks == nullptr && selectors == nullptr && queue == nullptr;
    if (!isEmpty && platform::hasMainRunLoop())
        _mailbox->post(_request.weak_from_this().lock(),
                       [blocks = std::move(blocks), selectors = std::move(selectors),
                        queue = std::move(queue)] {});
}

/// A queue owns its requests, and nothing is told after the end.
std::shared_ptr<HTTPRequestQueueDelegate> RequestNotifier::takeQueue() {
    const std::scoped_lock guard(_cancelledLock);
    return std::exchange(_queue, nullptr);
}

bool RequestNotifier::hasReceivers() const {
    const std::scoped_lock guard(_cancelledLock);
    return _delegate != nullptr || hasProgressReceivers();
}

bool RequestNotifier::hasProgressReceivers() const {
    const std::scoped_lock guard(_cancelledLock);
    return _queue != nullptr || _blocks != nullptr || _uploadProgressDelegate != nullptr ||
           _downloadProgressDelegate != nullptr;
}

void RequestNotifier::send(std::function<void()> call) {
    if (!hasReceivers())
        return;
    if (_reportsDirectly)
        call();
    else
        _mailbox->post(_request.shared_from_this(), std::move(call));
}

void RequestNotifier::sendProgress(std::function<void()> call) {
    if (hasProgressReceivers())
        send(std::move(call));
}

void RequestNotifier::requestStarted() {
    send([this] {
        callDelegate(&DelegateSelectors::didStartSelector, &HTTPRequestDelegate::requestStarted);
        callBlock(&RequestBlocks::startedBlock);
        if (const auto target = queue())
            target->requestStarted(_request);
    });
}

void RequestNotifier::requestReceivedResponseHeaders(const HTTPResponse& response) {
    send([this, response] {
        callDelegate(&DelegateSelectors::didReceiveResponseHeadersSelector,
                     &HTTPRequestDelegate::requestDidReceiveResponseHeaders, response);
        callBlock(&RequestBlocks::headersReceivedBlock, response);
        if (const auto target = queue())
            target->requestDidReceiveResponseHeaders(_request, response);
    });
}

void RequestNotifier::requestRedirected() {
    send([this] {
        if (HTTPRequestDelegate* const target = delegate())
            target->requestRedirected(_request);
        callBlock(&RequestBlocks::requestRedirectedBlock);
    });
}

bool RequestNotifier::isRedirectConfirmed() const {
    const std::scoped_lock guard(_cancelledLock);
    return (_delegate != nullptr && _delegate->capabilities().confirmsRedirects) ||
           (_delegate != nullptr && _selectors != nullptr && _selectors->willRedirectSelector) ||
           (_queue != nullptr && _queue->capabilities().confirmsRedirects);
}

void RequestNotifier::requestWillRedirectToURL(const platform::Url& url) {
    send([this, url] {
        callDelegate(&DelegateSelectors::willRedirectSelector,
                     &HTTPRequestDelegate::requestWillRedirectToURL, url);
        if (const auto target = queue())
            target->requestWillRedirectToURL(_request, url);
    });
}

bool RequestNotifier::isDataReceived() const {
    const std::scoped_lock guard(_cancelledLock);
    if (_blocks != nullptr && _blocks->dataReceivedBlock)
        return true;
    return _delegate != nullptr && (_delegate->capabilities().receivesData ||
                                    (_selectors != nullptr && _selectors->didReceiveDataSelector));
}

bool RequestNotifier::passOnReceivedData(QByteArray data, const std::function<void()>& caughtUp) {
    const qsizetype size = data.size();
    auto call = [this, data = std::move(data)] {
        callDelegate(&DelegateSelectors::didReceiveDataSelector,
                     &HTTPRequestDelegate::requestDidReceiveData, data);
        callBlock(&RequestBlocks::dataReceivedBlock, data);
    };
    if (!_reportsDirectly)
        return _mailbox->post(_request.shared_from_this(), std::move(call), size, caughtUp);
    call();
    return true;
}

bool RequestNotifier::isBodyStoreSupplied() const {
    const std::scoped_lock guard(_cancelledLock);
    return _delegate != nullptr && _delegate->capabilities().suppliesBodyStore;
}

void RequestNotifier::dataWasStored(std::int64_t count) {
    if (_untoldStored.fetch_add(count) > 0)
        return;
    send([this] {
        const std::int64_t untold = _untoldStored.exchange(0);
        if (HTTPRequestDelegate* const target = delegate())
            target->requestDidStoreData(_request, untold);
    });
}

void RequestNotifier::callWhenTold(std::function<void()> call) {
    _mailbox->post(_request.shared_from_this(), std::move(call));
}

void RequestNotifier::reportFinished() {
    send([this] {
        callDelegate(&DelegateSelectors::didFinishSelector, &HTTPRequestDelegate::requestFinished);
        callBlock(&RequestBlocks::completionBlock);
        if (const auto target = takeQueue())
            target->requestFinished(_request);
    });
}

void RequestNotifier::reportFailure() {
    send([this] {
        callDelegate(&DelegateSelectors::didFailSelector, &HTTPRequestDelegate::requestFailed);
        callBlock(&RequestBlocks::failureBlock);
        if (const auto target = takeQueue())
            target->requestFailed(_request);
    });
}

HTTPRequestDelegate::Capabilities RequestNotifier::capabilitiesOfTarget() const {
    if (_delegate != nullptr)
        return _delegate->capabilities();
    return _queue != nullptr ? _queue->capabilities() : HTTPRequestDelegate::Capabilities();
}

bool RequestNotifier::askForCredentials() {
    {
        const std::scoped_lock guard(_cancelledLock);
        if (!capabilitiesOfTarget().suppliesCredentials &&
            (_blocks == nullptr || !_blocks->authenticationNeededBlock))
            return false;
    }
    send([this] { ask(false); });
    return true;
}

bool RequestNotifier::askForProxyCredentials() {
    {
        const std::scoped_lock guard(_cancelledLock);
        if (!capabilitiesOfTarget().suppliesProxyCredentials &&
            (_blocks == nullptr || !_blocks->proxyAuthenticationNeededBlock))
            return false;
    }
    send([this] { ask(true); });
    return true;
}

/// Only one is asked: the first of delegate, queue and block that can answer.
void RequestNotifier::ask(bool aboutProxy) {
    const auto operation = aboutProxy ? &HTTPRequestDelegate::proxyAuthenticationNeededForRequest
                                      : &HTTPRequestDelegate::authenticationNeededForRequest;
    const auto canAnswer = [&](const HTTPRequestDelegate* target) {
        if (target == nullptr)
            return false;
        const auto capabilities = target->capabilities();
        return aboutProxy ? capabilities.suppliesProxyCredentials
                          : capabilities.suppliesCredentials;
    };
    const auto currentQueue = queue();
    if (HTTPRequestDelegate* const target = delegate(); canAnswer(target))
        (target->*operation)(_request);
    else if (canAnswer(currentQueue.get()))
        (currentQueue.get()->*operation)(_request);
    else
        callBlock(aboutProxy ? &RequestBlocks::proxyAuthenticationNeededBlock
                             : &RequestBlocks::authenticationNeededBlock);
}

void RequestNotifier::tell(ProgressField field, const ProgressCall& call) const {
    if (HTTPProgressDelegate* const target = progressDelegate(field))
        call(*target);
}

void RequestNotifier::tellQueueAnd(ProgressField field, const ProgressCall& call) const {
    if (const auto target = queue())
        call(*target);
    tell(field, call);
}

void RequestNotifier::downloadProgressed(std::int64_t amount, double fraction,
                                         std::uint64_t total) {
    sendProgress([=, this] {
        tellQueueAnd(&RequestNotifier::_downloadProgressDelegate,
                     [&](auto& target) { target.requestDidReceiveBytes(_request, amount); });
        tell(&RequestNotifier::_downloadProgressDelegate,
             [&](auto& target) { target.setDoubleValue(fraction); });
        callBlock(&RequestBlocks::bytesReceivedBlock, amount, total);
    });
}

void RequestNotifier::uploadProgressed(std::int64_t amount, double fraction, std::uint64_t total) {
    sendProgress([=, this] {
        tellQueueAnd(&RequestNotifier::_uploadProgressDelegate,
                     [&](auto& target) { target.requestDidSendBytes(_request, amount); });
        tell(&RequestNotifier::_uploadProgressDelegate,
             [&](auto& target) { target.setDoubleValue(fraction); });
        callBlock(&RequestBlocks::bytesSentBlock, amount, total);
    });
}

void RequestNotifier::setDownloadIndicator(double fraction) {
    sendProgress([=, this] {
        tell(&RequestNotifier::_downloadProgressDelegate,
             [&](auto& target) { target.setDoubleValue(fraction); });
    });
}

void RequestNotifier::setUploadIndicator(double fraction) {
    sendProgress([=, this] {
        tell(&RequestNotifier::_uploadProgressDelegate,
             [&](auto& target) { target.setDoubleValue(fraction); });
    });
}

void RequestNotifier::incrementDownloadSizeBy(std::int64_t amount) {
    sendProgress([=, this] {
        tellQueueAnd(&RequestNotifier::_downloadProgressDelegate, [&](auto& target) {
            target.requestIncrementDownloadSizeBy(_request, amount);
        });
        callBlock(&RequestBlocks::downloadSizeIncrementedBlock, amount);
    });
}

void RequestNotifier::incrementUploadSizeBy(std::int64_t amount) {
    sendProgress([=, this] {
        tellQueueAnd(&RequestNotifier::_uploadProgressDelegate,
                     [&](auto& target) { target.requestIncrementUploadSizeBy(_request, amount); });
        callBlock(&RequestBlocks::uploadSizeIncrementedBlock, amount);
    });
}

}  // namespace http
