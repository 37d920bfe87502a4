#include "http/http_request.h"

#include "http/content/http_data_decompressor.h"
#include "http/request/credential_search.h"
#include "http/request/request_notifier.h"
#include "http/request/request_run.h"
#include "http/request/request_state.h"
#include "http/shared/shared_state.h"

namespace http {

using platform::Url;

std::shared_ptr<HTTPRequest> HTTPRequest::requestWithURL(const Url& url) {
    return std::shared_ptr<HTTPRequest>(new HTTPRequest(url));
}

std::shared_ptr<HTTPRequest> HTTPRequest::requestWithURL(const Url& url,
                                                         std::shared_ptr<ResponseCache> usingCache,
                                                         std::uint32_t andCachePolicy) {
    auto request = requestWithURL(url);
    request->setDownloadCache(std::move(usingCache));
    request->setCachePolicy(andCachePolicy);
    return request;
}

HTTPRequest::HTTPRequest(const Url& url)
    : state_(std::make_unique<RequestState>(cancelledLock_, options_)),
      notifier_(std::make_unique<RequestNotifier>(*this, cancelledLock_)),
      run_(std::make_unique<RequestRun>(*this, *state_, *notifier_, SharedState::current(),
                                        [this] { announceFinished(); })) {
    const auto shared = SharedState::current();
    options_.timeOutSeconds = shared->defaults.timeOutSeconds();
    options_.downloadCache = shared->defaults.cache();
    run_->setURL(url);
}

HTTPRequest::~HTTPRequest() = default;

// Target.

Url HTTPRequest::url() const {
    return state(&RequestState::url);
}

void HTTPRequest::setURL(const Url& url) {
    const std::scoped_lock guard(cancelledLock_);
    run_->setURL(url);
}

Url HTTPRequest::originalURL() const {
    return state(&RequestState::originalURL);
}

Url HTTPRequest::redirectURL() const {
    return state(&RequestState::redirectURL);
}

QString HTTPRequest::requestMethod() const {
    return state(&RequestState::requestMethod);
}

void HTTPRequest::setRequestMethod(const QString& method) {
    const std::scoped_lock guard(cancelledLock_);
    run_->setRequestMethod(method);
}

void HTTPRequest::addRequestHeader(const QString& header, const QString& value) {
    const std::scoped_lock guard(cancelledLock_);
    options_.requestHeaders.set(header, value);
}

void HTTPRequest::addBasicAuthenticationHeaderWithUsername(const QString& username,
                                                           const QString& password) {
    const std::scoped_lock guard(cancelledLock_);
    if (const auto header = platform::basicAuthenticationHeader(username, password)) {
        options_.requestHeaders.set(QStringLiteral("Authorization"), *header);
        run_->authentication().assumeBasicScheme();
    }
}

// Body.

void HTTPRequest::setPostBody(const QByteArray& body) {
    const std::scoped_lock guard(cancelledLock_);
    run_->body().setPostBody(body);
}

QByteArray HTTPRequest::postBody() const {
    const std::scoped_lock guard(cancelledLock_);
    return run_->body().postBody();
}

void HTTPRequest::appendPostData(const QByteArray& data) {
    const std::scoped_lock guard(cancelledLock_);
    run_->body().append(data);
}

void HTTPRequest::appendPostDataFromFile(const QString& path) {
    const std::scoped_lock guard(cancelledLock_);
    run_->body().appendFile(path);
}

void HTTPRequest::setupPostBody() {
    const std::scoped_lock guard(cancelledLock_);
    run_->body().setup();
}

void HTTPRequest::buildPostBody() {
    const std::scoped_lock guard(cancelledLock_);
    static_cast<void>(run_->buildPostBody());
}

std::uint64_t HTTPRequest::postLength() const {
    return state(&RequestState::postLength);
}

// Receivers.

void HTTPRequest::setDelegate(HTTPRequestDelegate* delegate) {
    notifier_->setDelegate(delegate);
}

HTTPRequestDelegate* HTTPRequest::delegate() const {
    return notifier_->delegate();
}

void HTTPRequest::setQueue(std::shared_ptr<HTTPRequestQueueDelegate> queue) {
    notifier_->setQueue(std::move(queue));
}

std::shared_ptr<HTTPRequestQueueDelegate> HTTPRequest::queue() const {
    return notifier_->queue();
}

void HTTPRequest::setUploadProgressDelegate(HTTPProgressDelegate* delegate) {
    notifier_->setUploadProgressDelegate(delegate);
}

HTTPProgressDelegate* HTTPRequest::uploadProgressDelegate() const {
    return notifier_->uploadProgressDelegate();
}

void HTTPRequest::setDownloadProgressDelegate(HTTPProgressDelegate* delegate) {
    notifier_->setDownloadProgressDelegate(delegate);
}

HTTPProgressDelegate* HTTPRequest::downloadProgressDelegate() const {
    return notifier_->downloadProgressDelegate();
}

void HTTPRequest::setBlocks(RequestBlocks blocks) {
    notifier_->setBlocks(std::move(blocks));
}

void HTTPRequest::setSelectors(DelegateSelectors selectors) {
    notifier_->setSelectors(std::move(selectors));
}

bool HTTPRequest::setBodyStore(std::shared_ptr<HTTPBodyStore> store, const QByteArray& first) {
    return run_->delivery().setStore(std::move(store), first);
}

// Course.

void HTTPRequest::startAsynchronous() {
    run_->enqueue();
}

void HTTPRequest::startSynchronous() {
    run_->runSynchronously();
}

void HTTPRequest::start() {
    run_->start();
}

void HTTPRequest::cancel() {
    run_->cancel();
}

void HTTPRequest::clearDelegatesAndCancel() {
    notifier_->clearReceivers();
    cancel();
}

void HTTPRequest::redirectToURL(const Url& url) {
    run_->redirectToURL(url);
}

void HTTPRequest::retryUsingSuppliedCredentials() {
    run_->retryUsingSuppliedCredentials();
}

void HTTPRequest::cancelAuthentication() {
    run_->cancelAuthentication();
}

bool HTTPRequest::isCancelled() const {
    const std::scoped_lock guard(cancelledLock_);
    return state_->isCancelled();
}

bool HTTPRequest::inProgress() const {
    const std::scoped_lock guard(cancelledLock_);
    return state_->isInProgress();
}

bool HTTPRequest::complete() const {
    const std::scoped_lock guard(cancelledLock_);
    return state_->isComplete();
}

std::optional<platform::Error> HTTPRequest::error() const {
    return state(&RequestState::error);
}

int HTTPRequest::redirectCount() const {
    return state(&RequestState::redirectCount);
}

int HTTPRequest::retryCount() const {
    return state(&RequestState::retryCount);
}

// Response.

std::optional<platform::HTTPHeaders> HTTPRequest::responseHeaders() const {
    return state(&RequestState::responseHeaders);
}

int HTTPRequest::responseStatusCode() const {
    return state(&RequestState::responseStatusCode);
}

QString HTTPRequest::responseStatusMessage() const {
    return state(&RequestState::responseStatusMessage);
}

std::vector<platform::Cookie> HTTPRequest::responseCookies() const {
    return state(&RequestState::responseCookies);
}

StringEncoding HTTPRequest::responseEncoding() const {
    return state(&RequestState::responseEncoding);
}

bool HTTPRequest::isResponseCompressed() const {
    const std::scoped_lock guard(cancelledLock_);
    return state_->isResponseCompressed();
}

QByteArray HTTPRequest::rawResponseData() const {
    return state(&RequestState::rawResponseData);
}

std::optional<QByteArray> HTTPRequest::responseData() const {
    const QByteArray raw = rawResponseData();
    if (raw.isEmpty())
        return std::nullopt;
    if (!isResponseCompressed() || !shouldWaitToInflateCompressedResponses())
        return raw;
    const CodedBytes inflated = HTTPDataDecompressor::uncompressData(raw);
    return inflated.error ? std::nullopt : std::optional(inflated.data);
}

std::optional<QString> HTTPRequest::responseString() const {
    const auto data = responseData();
    return data ? decodedString(*data, responseEncoding()) : std::nullopt;
}

std::uint64_t HTTPRequest::contentLength() const {
    return state(&RequestState::contentLength);
}

std::uint64_t HTTPRequest::partialDownloadSize() const {
    return state(&RequestState::partialDownloadSize);
}

std::uint64_t HTTPRequest::totalBytesRead() const {
    return state(&RequestState::totalBytesRead);
}

std::uint64_t HTTPRequest::totalBytesSent() const {
    return state(&RequestState::totalBytesSent);
}

bool HTTPRequest::didUseCachedResponse() const {
    const std::scoped_lock guard(cancelledLock_);
    return run_->extras().isCacheUsed();
}

std::uint32_t HTTPRequest::connectionID() const {
    const std::scoped_lock guard(cancelledLock_);
    return run_->connectionID();
}

int HTTPRequest::authenticationNeeded() const {
    switch (state(&RequestState::sequel)) {
        case Sequel::ServerCredentials:
            return 1;
        case Sequel::ProxyCredentials:
            return 2;
        default:
            return 0;
    }
}

QString HTTPRequest::authenticationScheme() const {
    const std::scoped_lock guard(cancelledLock_);
    return run_->authentication().server().scheme;
}

QString HTTPRequest::authenticationRealm() const {
    const std::scoped_lock guard(cancelledLock_);
    return run_->authentication().server().realm;
}

QString HTTPRequest::proxyAuthenticationScheme() const {
    const std::scoped_lock guard(cancelledLock_);
    return run_->authentication().proxy().scheme;
}

QString HTTPRequest::proxyAuthenticationRealm() const {
    const std::scoped_lock guard(cancelledLock_);
    return run_->authentication().proxy().realm;
}

platform::ProtectionSpace HTTPRequest::protectionSpace() const {
    const std::scoped_lock guard(cancelledLock_);
    const Authentication& authentication = run_->authentication();
    const bool isForProxy = state_->sequel == Sequel::ProxyCredentials;
    return http::protectionSpace(*state_,
                                 isForProxy ? authentication.proxy() : authentication.server());
}

}  // namespace http
