#include "http/request/request_notifier.h"

#include <utility>

#include "http/http_request.h"
#include "http/request/mailbox.h"
#include "platform/base/run_loop.h"

namespace http {

RequestNotifier::RequestNotifier(HTTPRequest& request, std::recursive_mutex& cancelledLock)
    : request_(request), cancelledLock_(cancelledLock), mailbox_(std::make_shared<Mailbox>()) {}

RequestNotifier::~RequestNotifier() {
    clearReceivers();
}

void RequestNotifier::setDelegate(HTTPRequestDelegate* delegate) {
    const std::scoped_lock guard(cancelledLock_);
    delegate_ = delegate;
}

HTTPRequestDelegate* RequestNotifier::delegate() const {
    const std::scoped_lock guard(cancelledLock_);
    return delegate_;
}

void RequestNotifier::setQueue(std::shared_ptr<HTTPRequestQueueDelegate> queue) {
    const std::scoped_lock guard(cancelledLock_);
    queue_.swap(queue);
}

std::shared_ptr<HTTPRequestQueueDelegate> RequestNotifier::queue() const {
    const std::scoped_lock guard(cancelledLock_);
    return queue_;
}

void RequestNotifier::setProgressDelegate(ProgressField field, HTTPProgressDelegate* delegate) {
    {
        const std::scoped_lock guard(cancelledLock_);
        this->*field = delegate;
    }
    if (delegate != nullptr)
        send([this, field] {
            tell(field, [](HTTPProgressDelegate& target) { target.setMaxValue(1.0); });
        });
}

HTTPProgressDelegate* RequestNotifier::progressDelegate(ProgressField field) const {
    const std::scoped_lock guard(cancelledLock_);
    return this->*field;
}

void RequestNotifier::setUploadProgressDelegate(HTTPProgressDelegate* delegate) {
    setProgressDelegate(&RequestNotifier::uploadProgressDelegate_, delegate);
}

HTTPProgressDelegate* RequestNotifier::uploadProgressDelegate() const {
    return progressDelegate(&RequestNotifier::uploadProgressDelegate_);
}

void RequestNotifier::setDownloadProgressDelegate(HTTPProgressDelegate* delegate) {
    setProgressDelegate(&RequestNotifier::downloadProgressDelegate_, delegate);
}

HTTPProgressDelegate* RequestNotifier::downloadProgressDelegate() const {
    return progressDelegate(&RequestNotifier::downloadProgressDelegate_);
}

void RequestNotifier::setBlocks(RequestBlocks blocks) {
    const std::scoped_lock guard(cancelledLock_);
    blocks_ = std::make_shared<const RequestBlocks>(std::move(blocks));
}

RequestNotifier::Blocks RequestNotifier::blocks() const {
    const std::scoped_lock guard(cancelledLock_);
    return blocks_;
}

void RequestNotifier::setSelectors(DelegateSelectors selectors) {
    const std::scoped_lock guard(cancelledLock_);
    selectors_ = std::make_shared<const DelegateSelectors>(std::move(selectors));
}

RequestNotifier::Selectors RequestNotifier::selectors() const {
    const std::scoped_lock guard(cancelledLock_);
    return selectors_;
}

void RequestNotifier::clearReceivers() {
    Blocks blocks;
    Selectors selectors;
    std::shared_ptr<HTTPRequestQueueDelegate> queue;
    {
        const std::scoped_lock guard(cancelledLock_);
        delegate_ = nullptr;
        uploadProgressDelegate_ = nullptr;
        downloadProgressDelegate_ = nullptr;
        queue_.swap(queue);
        blocks_.swap(blocks);
        selectors_.swap(selectors);
    }
    // What they hold may belong to the main thread, so they are let go there.
    const bool isEmpty = blocks == nullptr && selectors == nullptr && queue == nullptr;
    if (!isEmpty && platform::hasMainRunLoop())
        mailbox_->post(request_.weak_from_this().lock(),
                       [blocks = std::move(blocks), selectors = std::move(selectors),
                        queue = std::move(queue)] {});
}

/// A queue owns its requests, and nothing is told after the end.
std::shared_ptr<HTTPRequestQueueDelegate> RequestNotifier::takeQueue() {
    const std::scoped_lock guard(cancelledLock_);
    return std::exchange(queue_, nullptr);
}

bool RequestNotifier::hasReceivers() const {
    const std::scoped_lock guard(cancelledLock_);
    return delegate_ != nullptr || hasProgressReceivers();
}

bool RequestNotifier::hasProgressReceivers() const {
    const std::scoped_lock guard(cancelledLock_);
    return queue_ != nullptr || blocks_ != nullptr || uploadProgressDelegate_ != nullptr ||
           downloadProgressDelegate_ != nullptr;
}

void RequestNotifier::send(std::function<void()> call) {
    if (!hasReceivers())
        return;
    if (reportsDirectly_)
        call();
    else
        mailbox_->post(request_.shared_from_this(), std::move(call));
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
            target->requestStarted(request_);
    });
}

void RequestNotifier::requestReceivedResponseHeaders(const HTTPResponse& response) {
    send([this, response] {
        callDelegate(&DelegateSelectors::didReceiveResponseHeadersSelector,
                     &HTTPRequestDelegate::requestDidReceiveResponseHeaders, response);
        callBlock(&RequestBlocks::headersReceivedBlock, response);
        if (const auto target = queue())
            target->requestDidReceiveResponseHeaders(request_, response);
    });
}

void RequestNotifier::requestRedirected() {
    send([this] {
        if (HTTPRequestDelegate* const target = delegate())
            target->requestRedirected(request_);
        callBlock(&RequestBlocks::requestRedirectedBlock);
    });
}

bool RequestNotifier::isRedirectConfirmed() const {
    const std::scoped_lock guard(cancelledLock_);
    return (delegate_ != nullptr && delegate_->capabilities().confirmsRedirects) ||
           (delegate_ != nullptr && selectors_ != nullptr && selectors_->willRedirectSelector) ||
           (queue_ != nullptr && queue_->capabilities().confirmsRedirects);
}

void RequestNotifier::requestWillRedirectToURL(const platform::Url& url) {
    send([this, url] {
        callDelegate(&DelegateSelectors::willRedirectSelector,
                     &HTTPRequestDelegate::requestWillRedirectToURL, url);
        if (const auto target = queue())
            target->requestWillRedirectToURL(request_, url);
    });
}

bool RequestNotifier::isDataReceived() const {
    const std::scoped_lock guard(cancelledLock_);
    if (blocks_ != nullptr && blocks_->dataReceivedBlock)
        return true;
    return delegate_ != nullptr && (delegate_->capabilities().receivesData ||
                                    (selectors_ != nullptr && selectors_->didReceiveDataSelector));
}

bool RequestNotifier::passOnReceivedData(QByteArray data, const std::function<void()>& caughtUp) {
    const qsizetype size = data.size();
    auto call = [this, data = std::move(data)] {
        callDelegate(&DelegateSelectors::didReceiveDataSelector,
                     &HTTPRequestDelegate::requestDidReceiveData, data);
        callBlock(&RequestBlocks::dataReceivedBlock, data);
    };
    if (!reportsDirectly_)
        return mailbox_->post(request_.shared_from_this(), std::move(call), size, caughtUp);
    call();
    return true;
}

bool RequestNotifier::isBodyStoreSupplied() const {
    const std::scoped_lock guard(cancelledLock_);
    return delegate_ != nullptr && delegate_->capabilities().suppliesBodyStore;
}

void RequestNotifier::dataWasStored(std::int64_t count) {
    if (untoldStored_.fetch_add(count) > 0)
        return;
    send([this] {
        const std::int64_t untold = untoldStored_.exchange(0);
        if (HTTPRequestDelegate* const target = delegate())
            target->requestDidStoreData(request_, untold);
    });
}

void RequestNotifier::callWhenTold(std::function<void()> call) {
    mailbox_->post(request_.shared_from_this(), std::move(call));
}

void RequestNotifier::reportFinished() {
    send([this] {
        callDelegate(&DelegateSelectors::didFinishSelector, &HTTPRequestDelegate::requestFinished);
        callBlock(&RequestBlocks::completionBlock);
        if (const auto target = takeQueue())
            target->requestFinished(request_);
    });
}

void RequestNotifier::reportFailure() {
    send([this] {
        callDelegate(&DelegateSelectors::didFailSelector, &HTTPRequestDelegate::requestFailed);
        callBlock(&RequestBlocks::failureBlock);
        if (const auto target = takeQueue())
            target->requestFailed(request_);
    });
}

HTTPRequestDelegate::Capabilities RequestNotifier::capabilitiesOfTarget() const {
    if (delegate_ != nullptr)
        return delegate_->capabilities();
    return queue_ != nullptr ? queue_->capabilities() : HTTPRequestDelegate::Capabilities();
}

bool RequestNotifier::askForCredentials() {
    {
        const std::scoped_lock guard(cancelledLock_);
        if (!capabilitiesOfTarget().suppliesCredentials &&
            (blocks_ == nullptr || !blocks_->authenticationNeededBlock))
            return false;
    }
    send([this] { ask(false); });
    return true;
}

bool RequestNotifier::askForProxyCredentials() {
    {
        const std::scoped_lock guard(cancelledLock_);
        if (!capabilitiesOfTarget().suppliesProxyCredentials &&
            (blocks_ == nullptr || !blocks_->proxyAuthenticationNeededBlock))
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
        (target->*operation)(request_);
    else if (canAnswer(currentQueue.get()))
        (currentQueue.get()->*operation)(request_);
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
        tellQueueAnd(&RequestNotifier::downloadProgressDelegate_,
                     [&](auto& target) { target.requestDidReceiveBytes(request_, amount); });
        tell(&RequestNotifier::downloadProgressDelegate_,
             [&](auto& target) { target.setDoubleValue(fraction); });
        callBlock(&RequestBlocks::bytesReceivedBlock, amount, total);
    });
}

void RequestNotifier::uploadProgressed(std::int64_t amount, double fraction, std::uint64_t total) {
    sendProgress([=, this] {
        tellQueueAnd(&RequestNotifier::uploadProgressDelegate_,
                     [&](auto& target) { target.requestDidSendBytes(request_, amount); });
        tell(&RequestNotifier::uploadProgressDelegate_,
             [&](auto& target) { target.setDoubleValue(fraction); });
        callBlock(&RequestBlocks::bytesSentBlock, amount, total);
    });
}

void RequestNotifier::setDownloadIndicator(double fraction) {
    sendProgress([=, this] {
        tell(&RequestNotifier::downloadProgressDelegate_,
             [&](auto& target) { target.setDoubleValue(fraction); });
    });
}

void RequestNotifier::setUploadIndicator(double fraction) {
    sendProgress([=, this] {
        tell(&RequestNotifier::uploadProgressDelegate_,
             [&](auto& target) { target.setDoubleValue(fraction); });
    });
}

void RequestNotifier::incrementDownloadSizeBy(std::int64_t amount) {
    sendProgress([=, this] {
        tellQueueAnd(&RequestNotifier::downloadProgressDelegate_, [&](auto& target) {
            target.requestIncrementDownloadSizeBy(request_, amount);
        });
        callBlock(&RequestBlocks::downloadSizeIncrementedBlock, amount);
    });
}

void RequestNotifier::incrementUploadSizeBy(std::int64_t amount) {
    sendProgress([=, this] {
        tellQueueAnd(&RequestNotifier::uploadProgressDelegate_,
                     [&](auto& target) { target.requestIncrementUploadSizeBy(request_, amount); });
        callBlock(&RequestBlocks::uploadSizeIncrementedBlock, amount);
    });
}

}  // namespace http
