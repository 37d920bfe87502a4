#include "http/request/request_run.h"

#include <exception>
#include <utility>

#include "http/http_request.h"
#include "http/http_request_error.h"
#include "http/request/request_notifier.h"
#include "http/request/request_state.h"
#include "http/shared/shared_state.h"
#include "platform/net/network_loop.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::Error;
using platform::HTTPReadStream;

namespace {

/// Five redirects are followed, the sixth is not.
constexpr int redirectLimit = 6;

}  // namespace

RequestRun::RequestRun(HTTPRequest& request, RequestState& state, RequestNotifier& notifier,
                       std::shared_ptr<SharedState> shared, std::function<void()> announceFinished)
    : _request(request),
      _state(state),
      _notifier(notifier),
      _shared(std::move(shared)),
      _announceFinished(std::move(announceFinished)),
      _body(state.options),
      _headers(state, _shared->defaults),
      _progress(state, notifier, _shared->progressLock),
      _file(state),
      _connection(state, _shared->connections),
      _stream(state, _shared->bandwidth, _shared->connections, _shared->clock),
      _parts{state, *_shared, notifier, _body, _headers, _progress, _file, _connection, _stream},
      _sender(request, _parts, *this),
      _statusWatch(request, _parts, *this),
      _delivery(request, _parts, *this),
      _reader(_parts, *this),
      _cache(request, _parts, *this),
      _authentication(request, _parts, *this),
      _proxies(request, _parts, *this) {}

RequestRun::~RequestRun() = default;

// Starting.

std::shared_ptr<TransferLoop> RequestRun::loop() {
    const std::scoped_lock guard(_state.cancelledLock);
    return _loop != nullptr ? _loop : _shared->thread.loop();
}

void RequestRun::perform(std::function<void()> step) {
    const auto target = loop();
    if (target == nullptr)
        return;
    target->post([this, alive = _request.shared_from_this(), step = std::move(step), target] {
        const std::scoped_lock guard(_state.cancelledLock);
        // It may have been started on another loop meanwhile.
        if (_loop != nullptr && _loop != target)
            perform(step);
        else
            step();
    });
}

void RequestRun::enqueue() {
    // Nobody would take it out of the queue again once the session has ended.
    if (_shared->thread.loop() != nullptr)
        _shared->sharedQueue.addOperation(_request.shared_from_this());
}

void RequestRun::start() {
    {
        const std::scoped_lock guard(_state.cancelledLock);
        _state.inProgress = true;
        _loop = _shared->thread.loop();
    }
    perform(&RequestRun::main);
}

void RequestRun::runSynchronously() {
    platform::NetworkLoop network(_shared->clock);
    const auto loop =
        std::make_shared<TransferLoop>(network, _shared->bandwidth, _shared->connections);
    const auto isOver = [this] {
        const std::scoped_lock guard(_state.cancelledLock);
        return _state.complete && !isWaitingForAnswer();
    };
    {
        const std::scoped_lock guard(_state.cancelledLock);
        _state.isSynchronous = true;
        if (_state.cancelled || _state.complete)
            return;
        _state.inProgress = true;
        _loop = loop;
        main();
    }
    if (!isOver())
        network.runUntil(isOver);
    loop->close();
    {
        const std::scoped_lock guard(_state.cancelledLock);
        _state.inProgress = false;
    }
    _announceFinished();
}

void RequestRun::main() {
    const std::scoped_lock guard(_state.cancelledLock);
    if (_state.error) {
        _state.complete = true;
        markAsFinished();
        return;
    }
    _loop->addClient(this);
    _state.complete = false;
    _state.didUseCachedResponse = false;
    try {
        if (_sender.prepare() && _proxies.configureProxies())
            _sender.startRequest();
    } catch (const std::exception& exception) {
        failWithError(unhandledExceptionError(exception));
    }
}

void RequestRun::setRequestMethod(const QString& method) {
    if (method == _state.requestMethod)
        return;
    _state.requestMethod = method;
    if (method == u"POST"_s || method == u"PUT"_s || _body.exists())
        _state.options.shouldAttemptPersistentConnection = false;
}

void RequestRun::setURL(const platform::Url& url) {
    if (url == _state.url)
        return;
    _state.url = url;
    _authentication.forgetChallenges();
    _state.request.reset();
    _state.redirectURL = platform::Url();
}

void RequestRun::becomePACFileRequest() {
    const std::scoped_lock guard(_state.cancelledLock);
    _state.isPACFileRequest = true;
    _notifier.setReportsDirectly();
}

void RequestRun::startRequest() {
    _sender.startRequest();
}

void RequestRun::buildRequestHeaders() {
    const std::scoped_lock guard(_state.cancelledLock);
    // What goes wrong here goes wrong again when it is this request's own turn.
    static_cast<void>(_headers.build());
}

// Events.

void RequestRun::performThrottling() {
    const std::scoped_lock guard(_state.cancelledLock);
    _stream.performThrottling();
}

void RequestRun::handleNetworkEvent(HTTPReadStream::Event event) {
    const std::scoped_lock guard(_state.cancelledLock);
    if (_state.complete || _state.cancelled || waitsForStore(event))
        return;
    switch (event) {
        case HTTPReadStream::Event::BytesAvailable:
            _reader.handleBytesAvailable();
            break;
        case HTTPReadStream::Event::End:
            _reader.handleStreamComplete();
            break;
        case HTTPReadStream::Event::Error:
            _reader.handleStreamError();
            break;
    }
    _stream.performThrottling();
    if (_state.downloadComplete && _state.needsRedirect)
        followRedirect();
    else if (_state.downloadComplete && _state.authenticationNeeded != AuthenticationNeeded::None)
        _authentication.attemptToApplyCredentialsAndResume();
}

/// What ends the response is told behind the bytes that are on their way to the disk.
bool RequestRun::waitsForStore(HTTPReadStream::Event event) {
    if (event == HTTPReadStream::Event::BytesAvailable ||
        !_delivery.callWhenStored([this, event] { handleNetworkEvent(event); }))
        return false;
    // That takes as long as the disk likes, and the server has no part in it.
    _state.lastActivityTime.reset();
    return true;
}

bool RequestRun::retryUsingNewConnection(bool counts) {
    const bool wouldRepeatData = _state.totalBytesRead > 0 && _notifier.isDataReceived();
    const bool isFree =
        !counts && std::exchange(_freeRetryAfter, _state.redirectCount) != _state.redirectCount;
    if ((!isFree && _state.retryCount > 0) || wouldRepeatData)
        return false;
    _state.willRetryRequest = true;
    cancelLoad();
    _state.willRetryRequest = false;
    _connection.giveUp();
    if (!isFree)
        ++_state.retryCount;
    _sender.startRequest();
    return true;
}

void RequestRun::noteContentLength(std::optional<std::uint64_t> length, bool isReported) {
    const std::scoped_lock guard(_state.cancelledLock);
    if (length)
        _state.contentLength = *length;
    if (!isReported)
        return;
    if (length) {
        _progress.incrementDownloadSizeBy(
            static_cast<std::int64_t>(_state.contentLength + _state.partialDownloadSize));
    } else {
        _state.options.showAccurateProgress = false;
        _progress.incrementDownloadSizeBy(1);
    }
}

// Redirects.

void RequestRun::followRedirectLater() {
    perform(&RequestRun::followRedirect);
}

void RequestRun::followRedirect() {
    if (!isWaitingForAnswer() || _isRedirectAsked)
        return;
    if (!isHeard() || !_notifier.isRedirectConfirmed()) {
        performRedirect();
        return;
    }
    _isRedirectAsked = true;
    _notifier.requestWillRedirectToURL(std::exchange(_state.redirectURL, platform::Url()));
}

void RequestRun::redirectToURL(const platform::Url& url) {
    {
        const std::scoped_lock guard(_state.cancelledLock);
        _state.redirectURL = url;
    }
    perform(&RequestRun::performRedirect);
}

void RequestRun::performRedirect() {
    if (!isWaitingForAnswer() || !_state.needsRedirect)
        return;
    _isRedirectAsked = false;
    // They are not the next address's, whatever a cache may know of that.
    _state.responseHeaders.reset();
    if (!_state.redirectURL.hasSameOrigin(_state.url))
        _authentication.leaveServer();
    setURL(_state.redirectURL);
    _state.complete = true;
    _state.needsRedirect = false;
    if (++_state.redirectCount >= redirectLimit)
        failWithError(tooMuchRedirectionError());
    else
        main();
}

bool RequestRun::isWaitingForAnswer() const {
    return _state.inProgress && _state.complete &&
           (_state.needsRedirect || _state.authenticationNeeded != AuthenticationNeeded::None);
}

// The end.

void RequestRun::cancel() {
    perform(&RequestRun::cancelOnRequestThread);
}

void RequestRun::cancelOnRequestThread() {
    if (_state.cancelled || (_state.complete && !isWaitingForAnswer()))
        return;
    failWithError(cancelledError());
    cancelLoad();
    _state.cancelled = true;
}

void RequestRun::cancelLoad() {
    _proxies.cancelLoad();
    _stream.destroy();
    if (_state.options.downloadDestinationPath.isEmpty()) {
        if (!_state.complete)
            _state.rawResponseData = QByteArray();
    } else {
        _file.abandon();
    }
    if (_state.authenticationNeeded == AuthenticationNeeded::None && !_state.willRetryRequest)
        _body.removeTemporaryFiles();
}

void RequestRun::failWithError(const Error& error) {
    _state.complete = true;
    const bool isConnectionSound =
        hasRequestErrorCode(error, HTTPRequestErrorCode::Authentication) ||
        hasRequestErrorCode(error, HTTPRequestErrorCode::TooMuchRedirection);
    if (isConnectionSound) {
        _connection.stampExpiry();
    } else {
        _connection.remove();
        _stream.destroy();
    }
    if (_state.cancelled || _state.error || _cache.answerFailure())
        return;
    _state.error = error;
    if (_state.mainRequest != nullptr) {
        _state.mainRequest->internals().failWithErrorOfProbe(error);
        _notifier.clearReceivers();
    } else {
        _notifier.reportFailure();
    }
    if (_state.inProgress)
        markAsFinished();
}

void RequestRun::failWithErrorOfProbe(const Error& error) {
    const std::scoped_lock guard(_state.cancelledLock);
    if (_state.error)
        return;
    _state.error = error;
    _notifier.reportFailure();
}

bool RequestRun::isHeard() const {
    return !_state.error && _state.mainRequest == nullptr;
}

void RequestRun::requestFinished() {
    if (isHeard())
        _notifier.reportFinished();
}

void RequestRun::markAsFinished() {
    if (std::exchange(_state.finished, true))
        return;
    _statusWatch.stop();
    _proxies.cancelLoad();
    _stream.destroy();
    _state.request.reset();
    _authentication.forgetChallenges();
    _state.inProgress = false;
    if (_loop->isClosed())
        return;
    _loop->removeClient(this);
    // Its end may start other requests, which must not happen under this one's lock.
    _loop->post([this, alive = _request.shared_from_this()] { _announceFinished(); });
}

void RequestRun::loopWillEnd() {
    const std::scoped_lock guard(_state.cancelledLock);
    _proxies.cancelLoad();
    _stream.destroy();
    _state.complete = true;
    _state.cancelled = true;
    _state.inProgress = false;
}

// Credentials.

void RequestRun::retryUsingSuppliedCredentials() {
    perform([this] {
        _authentication.credentialsWereSupplied();
        resumeAuthentication();
    });
}

void RequestRun::resumeWithSavedCredentials(bool forProxy,
                                            std::optional<platform::HTTPCredentials> found) {
    perform([this, forProxy, found = std::move(found)] {
        _authentication.savedCredentialsWereFound(forProxy, found);
        resumeAuthentication();
    });
}

void RequestRun::resumeWithSessionCredentials() {
    perform([this] {
        const bool isAsked = _state.authenticationNeeded != AuthenticationNeeded::None;
        if (isWaitingForAnswer() && isAsked && _state.request)
            _authentication.followOthers();
    });
}

void RequestRun::resumeAuthentication() {
    if (!isWaitingForAnswer())
        return;
    if (_state.request)
        _authentication.attemptToApplyCredentialsAndResume();
    else
        main();
}

void RequestRun::cancelAuthentication() {
    perform(&RequestRun::failAuthentication);
}

void RequestRun::failAuthentication() {
    if (_state.inProgress)
        failWithError(authenticationError());
}

}  // namespace http
