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
    : _state(std::make_unique<RequestState>(_cancelledLock, _options)),
      _notifier(std::make_unique<RequestNotifier>(*this, _cancelledLock)),
      _run(std::make_unique<RequestRun>(*this, *_state, *_notifier, SharedState::current(),
                                        [this] { announceFinished(); })) {
    const auto shared = SharedState::current();
    _options.timeOutSeconds = shared->defaults.timeOutSeconds();
    _options.downloadCache = shared->defaults.cache();
    _run->setURL(url);
}

HTTPRequest::~HTTPRequest() = default;

// Target.

Url HTTPRequest::url() const {
    return state(&RequestState::url);
}

void HTTPRequest::setURL(const Url& url) {
    const std::scoped_lock guard(_cancelledLock);
    _run->setURL(url);
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
    const std::scoped_lock guard(_cancelledLock);
    _run->setRequestMethod(method);
}

void HTTPRequest::addRequestHeader(const QString& header, const QString& value) {
    const std::scoped_lock guard(_cancelledLock);
    _options.requestHeaders.set(header, value);
}

void HTTPRequest::addBasicAuthenticationHeaderWithUsername(const QString& username,
                                                           const QString& password) {
    const std::scoped_lock guard(_cancelledLock);
    if (const auto header = platform::basicAuthenticationHeader(username, password)) {
        _options.requestHeaders.set(QStringLiteral("Authorization"), *header);
        _run->authentication().assumeBasicScheme();
    }
}

// Body.

void HTTPRequest::setPostBody(const QByteArray& body) {
    const std::scoped_lock guard(_cancelledLock);
    _run->body().setPostBody(body);
}

QByteArray HTTPRequest::postBody() const {
    const std::scoped_lock guard(_cancelledLock);
    return _run->body().postBody();
}

void HTTPRequest::appendPostData(const QByteArray& data) {
    const std::scoped_lock guard(_cancelledLock);
    _run->body().append(data);
}

void HTTPRequest::appendPostDataFromFile(const QString& path) {
    const std::scoped_lock guard(_cancelledLock);
    _run->body().appendFile(path);
}

void HTTPRequest::setupPostBody() {
    const std::scoped_lock guard(_cancelledLock);
    _run->body().setup();
}

void HTTPRequest::buildPostBody() {
    const std::scoped_lock guard(_cancelledLock);
    static_cast<void>(_run->buildPostBody());
}

std::uint64_t HTTPRequest::postLength() const {
    return state(&RequestState::postLength);
}

// Receivers.

void HTTPRequest::setDelegate(HTTPRequestDelegate* delegate) {
    _notifier->setDelegate(delegate);
}

HTTPRequestDelegate* HTTPRequest::delegate() const {
    return _notifier->delegate();
}

void HTTPRequest::setQueue(std::shared_ptr<HTTPRequestQueueDelegate> queue) {
    _notifier->setQueue(std::move(queue));
}

std::shared_ptr<HTTPRequestQueueDelegate> HTTPRequest::queue() const {
    return _notifier->queue();
}

void HTTPRequest::setUploadProgressDelegate(HTTPProgressDelegate* delegate) {
    _notifier->setUploadProgressDelegate(delegate);
}

HTTPProgressDelegate* HTTPRequest::uploadProgressDelegate() const {
    return _notifier->uploadProgressDelegate();
}

void HTTPRequest::setDownloadProgressDelegate(HTTPProgressDelegate* delegate) {
    _notifier->setDownloadProgressDelegate(delegate);
}

HTTPProgressDelegate* HTTPRequest::downloadProgressDelegate() const {
    return _notifier->downloadProgressDelegate();
}

void HTTPRequest::setBlocks(RequestBlocks blocks) {
    _notifier->setBlocks(std::move(blocks));
}

void HTTPRequest::setSelectors(DelegateSelectors selectors) {
    _notifier->setSelectors(std::move(selectors));
}

bool HTTPRequest::setBodyStore(std::shared_ptr<HTTPBodyStore> store, const QByteArray& first) {
    return _run->delivery().setStore(std::move(store), first);
}

// Course.

void HTTPRequest::startAsynchronous() {
    _run->enqueue();
}

void HTTPRequest::startSynchronous() {
    _run->runSynchronously();
}

void HTTPRequest::start() {
    _run->start();
}

void HTTPRequest::cancel() {
    _run->cancel();
}

void HTTPRequest::clearDelegatesAndCancel() {
    _notifier->clearReceivers();
    cancel();
}

void HTTPRequest::redirectToURL(const Url& url) {
    _run->redirectToURL(url);
}

void HTTPRequest::retryUsingSuppliedCredentials() {
    _run->retryUsingSuppliedCredentials();
}

void HTTPRequest::cancelAuthentication() {
    _run->cancelAuthentication();
}

bool HTTPRequest::isCancelled() const {
    return state(&RequestState::cancelled);
}

bool HTTPRequest::inProgress() const {
    return state(&RequestState::inProgress);
}

bool HTTPRequest::complete() const {
    return state(&RequestState::complete);
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
    const std::scoped_lock guard(_cancelledLock);
    return _state->isResponseCompressed();
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
    return state(&RequestState::didUseCachedResponse);
}

std::uint32_t HTTPRequest::connectionID() const {
    const std::scoped_lock guard(_cancelledLock);
    return _run->connectionID();
}

int HTTPRequest::authenticationNeeded() const {
    return static_cast<int>(state(&RequestState::authenticationNeeded));
}

QString HTTPRequest::authenticationScheme() const {
    const std::scoped_lock guard(_cancelledLock);
    return _run->authentication().server().scheme;
}

QString HTTPRequest::authenticationRealm() const {
    const std::scoped_lock guard(_cancelledLock);
    return _run->authentication().server().realm;
}

QString HTTPRequest::proxyAuthenticationScheme() const {
    const std::scoped_lock guard(_cancelledLock);
    return _run->authentication().proxy().scheme;
}

QString HTTPRequest::proxyAuthenticationRealm() const {
    const std::scoped_lock guard(_cancelledLock);
    return _run->authentication().proxy().realm;
}

platform::ProtectionSpace HTTPRequest::protectionSpace() const {
    const std::scoped_lock guard(_cancelledLock);
    const Authentication& authentication = _run->authentication();
    const bool isForProxy = _state->authenticationNeeded == AuthenticationNeeded::Proxy;
    return http::protectionSpace(*_state,
                                 isForProxy ? authentication.proxy() : authentication.server());
}

}  // namespace http
