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
    : request_(request),
      state_(state),
      notifier_(notifier),
      shared_(std::move(shared)),
      announceFinished_(std::move(announceFinished)),
      body_(state.options),
      headers_(state, shared_->defaults, extras_),
      connection_(state, shared_->connections),
      stream_(state, shared_->bandwidth, shared_->connections, shared_->clock),
      parts_{state, *shared_, notifier, body_, headers_, extras_, connection_, stream_},
      sender_(request, parts_, *this),
      statusWatch_(request, parts_, *this),
      delivery_(request, parts_, *this),
      reader_(parts_, *this),
      extras_(request, parts_, *this),
      authentication_(request, parts_, *this),
      proxies_(request, parts_, *this) {}

RequestRun::~RequestRun() = default;

// Starting.

std::shared_ptr<TransferLoop> RequestRun::loop() {
    const std::scoped_lock guard(state_.cancelledLock);
    return loop_ != nullptr ? loop_ : shared_->thread.loop();
}

void RequestRun::perform(std::function<void()> step) {
    const auto target = loop();
    if (target == nullptr)
        return;
    target->post([this, alive = request_.shared_from_this(), step = std::move(step), target] {
        const std::scoped_lock guard(state_.cancelledLock);
        // It may have been started on another loop meanwhile.
        if (loop_ != nullptr && loop_ != target)
            perform(step);
        else
            step();
    });
}

void RequestRun::enqueue() {
    // Nobody would take it out of the queue again once the session has ended.
    if (shared_->thread.loop() != nullptr)
        shared_->sharedQueue.addOperation(request_.shared_from_this());
}

void RequestRun::start() {
    {
        const std::scoped_lock guard(state_.cancelledLock);
        loop_ = shared_->thread.loop();
        if (state_.phase == RequestPhase::New)
            state_.phase = RequestPhase::Preparing;
    }
    perform(&RequestRun::main);
}

void RequestRun::runSynchronously() {
    platform::NetworkLoop network(shared_->clock);
    const auto loop =
        std::make_shared<TransferLoop>(network, shared_->bandwidth, shared_->connections);
    const auto isOver = [this] {
        const std::scoped_lock guard(state_.cancelledLock);
        return state_.isComplete() && !state_.isWaiting();
    };
    {
        const std::scoped_lock guard(state_.cancelledLock);
        state_.role = RequestRole::Synchronous;
        if (state_.isComplete())
            return;
        loop_ = loop;
        main();
    }
    if (!isOver())
        network.runUntil(isOver);
    loop->close();
    announceFinished_();
}

void RequestRun::main() {
    const std::scoped_lock guard(state_.cancelledLock);
    if (state_.error) {
        markAsFinished();
        return;
    }
    loop_->addClient(this);
    state_.phase = RequestPhase::Preparing;
    try {
        if (sender_.prepare() && proxies_.configureProxies())
            sender_.startRequest();
    } catch (const std::exception& exception) {
        failWithError(unhandledExceptionError(exception));
    }
}

void RequestRun::setRequestMethod(const QString& method) {
    if (method == state_.requestMethod)
        return;
    state_.requestMethod = method;
    if (method == u"POST"_s || method == u"PUT"_s || body_.exists())
        state_.options.shouldAttemptPersistentConnection = false;
}

void RequestRun::setURL(const platform::Url& url) {
    if (url == state_.url)
        return;
    state_.url = url;
    authentication_.forgetChallenges();
    state_.request.reset();
    state_.redirectURL = platform::Url();
}

void RequestRun::becomePACFileRequest() {
    const std::scoped_lock guard(state_.cancelledLock);
    state_.role = RequestRole::ProxyScript;
    notifier_.setReportsDirectly();
}

void RequestRun::startRequest() {
    sender_.startRequest();
}

void RequestRun::buildRequestHeaders() {
    const std::scoped_lock guard(state_.cancelledLock);
    // What goes wrong here goes wrong again when it is this request's own turn.
    static_cast<void>(headers_.build());
}

// Events.

void RequestRun::performThrottling() {
    const std::scoped_lock guard(state_.cancelledLock);
    stream_.performThrottling();
}

void RequestRun::handleNetworkEvent(HTTPReadStream::Event event) {
    const std::scoped_lock guard(state_.cancelledLock);
    if (state_.phase != RequestPhase::Transferring || waitsForStore(event))
        return;
    switch (event) {
        case HTTPReadStream::Event::BytesAvailable:
            reader_.handleBytesAvailable();
            break;
        case HTTPReadStream::Event::End:
            reader_.handleStreamComplete();
            break;
        case HTTPReadStream::Event::Error:
            reader_.handleStreamError();
            break;
    }
    stream_.performThrottling();
    if (!state_.isWaiting())
        return;
    if (state_.isRedirected())
        followRedirect();
    else
        authentication_.attemptToApplyCredentialsAndResume();
}

/// What ends the response is told behind the bytes that are on their way to the disk.
bool RequestRun::waitsForStore(HTTPReadStream::Event event) {
    if (event == HTTPReadStream::Event::BytesAvailable ||
        !delivery_.callWhenStored([this, event] { handleNetworkEvent(event); }))
        return false;
    // That takes as long as the disk likes, and the server has no part in it.
    state_.lastActivityTime.reset();
    return true;
}

bool RequestRun::retryUsingNewConnection(bool counts) {
    const bool wouldRepeatData = state_.totalBytesRead > 0 && notifier_.isDataReceived();
    const bool isFree =
        !counts && std::exchange(freeRetryAfter_, state_.redirectCount) != state_.redirectCount;
    if ((!isFree && state_.retryCount > 0) || wouldRepeatData)
        return false;
    dropTransfer();
    connection_.giveUp();
    if (!isFree)
        ++state_.retryCount;
    sender_.startRequest();
    return true;
}

void RequestRun::noteContentLength(std::optional<std::uint64_t> length, bool isReported) {
    const std::scoped_lock guard(state_.cancelledLock);
    if (length)
        state_.contentLength = *length;
    if (isReported)
        extras_.lengthIsKnown(length);
}

// Redirects.

void RequestRun::followRedirectLater() {
    perform(&RequestRun::followRedirect);
}

void RequestRun::followRedirect() {
    if (!state_.isWaiting() || state_.sequel != Sequel::Redirect)
        return;
    if (!isHeard() || !notifier_.isRedirectConfirmed()) {
        performRedirect();
        return;
    }
    state_.sequel = Sequel::RedirectInQuestion;
    notifier_.requestWillRedirectToURL(std::exchange(state_.redirectURL, platform::Url()));
}

void RequestRun::redirectToURL(const platform::Url& url) {
    {
        const std::scoped_lock guard(state_.cancelledLock);
        state_.redirectURL = url;
    }
    perform(&RequestRun::performRedirect);
}

void RequestRun::performRedirect() {
    if (!state_.isWaiting() || !state_.isRedirected())
        return;
    // They are not the next address's, whatever a cache may know of that.
    state_.responseHeaders.reset();
    if (!state_.redirectURL.hasSameOrigin(state_.url))
        authentication_.leaveServer();
    setURL(state_.redirectURL);
    state_.sequel = Sequel::Nothing;
    if (++state_.redirectCount >= redirectLimit)
        failWithError(tooMuchRedirectionError());
    else
        main();
}

// The end.

void RequestRun::cancel() {
    perform(&RequestRun::cancelOnRequestThread);
}

void RequestRun::cancelOnRequestThread() {
    if (state_.isComplete() && !state_.isWaiting())
        return;
    failWithError(cancelledError());
    cancelLoad();
    state_.phase = RequestPhase::Cancelled;
}

void RequestRun::cancelLoad() {
    dropTransfer();
    if (!state_.needsCredentials())
        body_.removeTemporaryFiles();
}

/// What is needed to send once more stays.
void RequestRun::dropTransfer() {
    proxies_.cancelLoad();
    stream_.destroy();
    if (extras_.takesBody())
        extras_.abandonBody();
    else if (!state_.isComplete())
        state_.rawResponseData = QByteArray();
}

void RequestRun::failWithError(const Error& error) {
    const bool wasInProgress = state_.isInProgress();
    if (wasInProgress)
        state_.phase = RequestPhase::Answered;
    const bool isConnectionSound =
        hasRequestErrorCode(error, HTTPRequestErrorCode::Authentication) ||
        hasRequestErrorCode(error, HTTPRequestErrorCode::TooMuchRedirection);
    if (isConnectionSound) {
        connection_.stampExpiry();
    } else {
        connection_.remove();
        stream_.destroy();
    }
    if (state_.isCancelled() || state_.error || extras_.answerInPlaceOfFailure())
        return;
    state_.error = error;
    if (extras_.isProbe())
        extras_.passOnFailure(error);
    else
        notifier_.reportFailure();
    if (wasInProgress)
        markAsFinished();
}

void RequestRun::failWithErrorOfProbe(const Error& error) {
    const std::scoped_lock guard(state_.cancelledLock);
    if (state_.error)
        return;
    state_.error = error;
    notifier_.reportFailure();
}

bool RequestRun::isHeard() const {
    return !state_.error && !extras_.isProbe();
}

void RequestRun::requestFinished() {
    if (isHeard())
        notifier_.reportFinished();
}

void RequestRun::markAsFinished() {
    if (!state_.isCancelled())
        state_.phase = RequestPhase::Ended;
    statusWatch_.stop();
    proxies_.cancelLoad();
    stream_.destroy();
    state_.request.reset();
    authentication_.forgetChallenges();
    if (loop_->isClosed())
        return;
    loop_->removeClient(this);
    // Its end may start other requests, which must not happen under this one's lock.
    loop_->post([this, alive = request_.shared_from_this()] { announceFinished_(); });
}

void RequestRun::loopWillEnd() {
    const std::scoped_lock guard(state_.cancelledLock);
    proxies_.cancelLoad();
    stream_.destroy();
    state_.phase = RequestPhase::Cancelled;
}

// Credentials.

void RequestRun::retryUsingSuppliedCredentials() {
    perform([this] {
        authentication_.credentialsWereSupplied();
        resumeAuthentication();
    });
}

void RequestRun::resumeWithSavedCredentials(bool forProxy,
                                            std::optional<platform::HTTPCredentials> found) {
    perform([this, forProxy, found = std::move(found)] {
        authentication_.savedCredentialsWereFound(forProxy, found);
        resumeAuthentication();
    });
}

void RequestRun::resumeWithSessionCredentials() {
    perform([this] {
        if (state_.isWaiting() && state_.needsCredentials() && state_.request)
            authentication_.followOthers();
    });
}

void RequestRun::resumeAuthentication() {
    if (!state_.isWaiting())
        return;
    if (state_.request)
        authentication_.attemptToApplyCredentialsAndResume();
    else
        main();
}

void RequestRun::cancelAuthentication() {
    perform(&RequestRun::failAuthentication);
}

void RequestRun::failAuthentication() {
    if (state_.isInProgress())
        failWithError(authenticationError());
}

}  // namespace http
