#include "http/request/authentication.h"

#include "http/http_request.h"
#include "http/http_request_error.h"
#include "http/request/credential_search.h"
#include "http/request/request_notifier.h"
#include "http/request/request_run.h"
#include "http/request/request_state.h"
#include "http/request/transfer_stream.h"
#include "http/shared/shared_state.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::Error;
using platform::HTTPAuthentication;
using platform::HTTPCredentials;

namespace {

bool blamesCredentials(const Error& error) {
    return error.is(platform::httpStreamErrorDomain, platform::httpStreamErrorBadUserName) ||
           error.is(platform::httpStreamErrorDomain, platform::httpStreamErrorBadPassword);
}

}  // namespace

Authentication::Authentication(HTTPRequest& request, RequestParts parts, RequestRun& run)
    : _request(request), _parts(parts), _run(run), _applier(parts) {}

// Ahead of a challenge.

void Authentication::applyAuthorizationHeader() {
    const RequestOptions& options = _parts.state.options;
    for (ChallengeSide* const side : {&_server, &_proxy}) {
        side->answering.reset();
        side->connection = {};
    }
    if (!options.shouldPresentCredentialsBeforeChallenge)
        return;
    const bool isGivenHeader = options.requestHeaders.contains(u"Authorization"_s);
    const bool isKnownToBeBasic = _server.scheme == platform::authenticationSchemeBasic;
    if (!isGivenHeader && isKnownToBeBasic && !options.username.isEmpty() &&
        !options.password.isNull()) {
        static_cast<void>(_applier.setBasicHeader(_server, options.username, options.password));
    } else if (!isGivenHeader && _applier.answerAheadOfChallenge(_server)) {
        _server.scheme = _server.answering != nullptr ? _server.answering->method()
                                                      : platform::authenticationSchemeBasic;
    }
}

void Authentication::prepareSend() {
    // The proxy may have been found only after the message was made.
    if (_proxy.answering == nullptr && usesHttpProxy(_parts.state) &&
        _parts.state.options.shouldPresentCredentialsBeforeChallenge)
        static_cast<void>(_applier.answerAheadOfChallenge(_proxy));
    for (ChallengeSide* const side : {&_server, &_proxy}) {
        // No server takes the same answer twice.
        if (side->answering != nullptr && !side->isAnswerUnsent)
            static_cast<void>(
                _applier.answerWith(*side, side->answering, side->answeringCredentials));
        side->isAnswerUnsent = false;
    }
}

void Authentication::credentialsWereAccepted() {
    const RequestOptions& options = _parts.state.options;
    tellOthers();
    for (ChallengeSide* const side : {&_server, &_proxy}) {
        if (!std::exchange(side->isToBeSaved, false))
            continue;
        platform::sharedCredentialStorage().save(protectionSpace(_parts.state, *side),
                                                 *side->credentials);
    }
    const bool wasSentAhead = _server.authentication == nullptr && _server.answering == nullptr &&
                              _server.scheme == platform::authenticationSchemeBasic;
    if (!wasSentAhead || !options.useSessionPersistence || options.username.isEmpty() ||
        options.password.isNull() || _applier.findSessionCredentials(_server))
        return;
    SessionEntry entry;
    entry.credentials = std::make_shared<const HTTPCredentials>(
        HTTPCredentials{options.username, options.password, {}});
    entry.authenticationScheme = _server.scheme;
    entry.url = _parts.state.url;
    _parts.shared.sessionCredentials.store(std::move(entry));
}

// After a challenge.

bool Authentication::hasEnded() const {
    return _parts.state.error || _parts.state.cancelled;
}

void Authentication::attemptToApplyCredentialsAndResume() {
    if (!hasEnded())
        attempt(_parts.state.authenticationNeeded == AuthenticationNeeded::Proxy ? _proxy
                                                                                 : _server);
}

void Authentication::attempt(ChallengeSide& side) {
    const auto head = _parts.stream.responseHead();
    if (side.authentication == nullptr && !meetChallenge(side)) {
        _run.cancelLoad();
        _run.failWithError(
            makeRequestError(HTTPRequestErrorCode::ApplyingCredentials,
                             u"Failed to get authentication object from response headers"_s));
        return;
    }
    const auto reason =
        head ? side.authentication->considerResponse(*head) : std::optional<Error>();
    side.scheme = side.authentication->method();
    side.realm =
        side.authentication->requiresAccountDomain() ? QString() : side.authentication->realm();
    if (reason)
        takeRefusal(side, *reason);
    else
        answerChallenge(side);
}

bool Authentication::meetChallenge(ChallengeSide& side) {
    const auto& head = _parts.stream.responseHead();
    if (!head)
        return false;
    // A server cannot ask for what is the proxy's.
    const bool isTunnelled = _parts.state.url.hasScheme("https");
    if (side.isProxy && (!usesHttpProxy(_parts.state) || (isTunnelled && !head->fromProxy)))
        return false;
    side.authentication = HTTPAuthentication::createFromResponse(*head);
    return side.authentication != nullptr;
}

void Authentication::answerChallenge(ChallengeSide& side) {
    _run.cancelLoad();
    if (side.credentials != nullptr) {
        answerAgain(side);
    } else if (!side.authentication->requiresUserNameAndPassword()) {
        const auto nobody = std::make_shared<const HTTPCredentials>();
        if (_applier.answerWith(side, side.authentication, nobody))
            _run.startRequest();
    } else {
        answerFromSearch(side);
    }
}

/// The same once more: nothing was wrong with it.
void Authentication::answerAgain(ChallengeSide& side) {
    const bool isNTLM = side.scheme == platform::authenticationSchemeNTLM;
    const bool hasGoneInCircles = isNTLM && side.retryCount > 1;
    if (!hasGoneInCircles && _applier.applyCredentials(side, side.credentials))
        _run.startRequest();
    else if (isNTLM && side.retryCount == 2)
        fail();
    else
        failToApply(side, *side.credentials);
}

void Authentication::answerFromSearch(ChallengeSide& side) {
    std::unique_lock guard(_parts.shared.delegateAuthenticationLock);
    if (hasEnded())
        return;
    if (_applier.applySessionCredentials(side)) {
        guard.unlock();
        _run.startRequest();
        return;
    }
    const auto found = findCredentials(_parts.state, side);
    if (found) {
        const bool isApplied =
            _applier.applyCredentials(side, std::make_shared<const HTTPCredentials>(*found));
        // A wrong password is no use to anybody, so it is saved when it has been accepted.
        side.isToBeSaved =
            isApplied && _parts.state.options.useKeychainPersistence && side.saved != *found;
        guard.unlock();
        if (isApplied)
            _run.startRequest();
        else
            failToApply(side, *found);
        return;
    }
    if (lookUpSaved(side) || willAskDelegate(side))
        return;
    guard.unlock();
    fail();
}

void Authentication::takeRefusal(ChallengeSide& side, const Error& reason) {
    side.authentication.reset();
    side.isToBeSaved = false;
    if (blamesCredentials(reason)) {
        std::unique_lock guard(_parts.shared.delegateAuthenticationLock);
        if (side.credentials != nullptr) {
            _applier.sessionEntries(side).remove(side.credentials);
            side.refused.push_back(*side.credentials);
            side.credentials.reset();
        }
        if (hasEnded())
            return;
        if (meetChallenge(side) && _applier.applySessionCredentials(side)) {
            guard.unlock();
            _run.startRequest();
            return;
        }
        // The user may take any time.
        _parts.state.lastActivityTime.reset();
        if (willAskDelegate(side)) {
            // A proxy's question goes through the search once more while it is on its way: another
            // request may have been answered meanwhile.
            if (side.isProxy)
                attempt(side);
            return;
        }
    }
    _run.cancelLoad();
    fail();
}

// Asking.

/// True: the answer will come, and this goes on then.
bool Authentication::lookUpSaved(ChallengeSide& side) {
    if (side.lookUp == ChallengeSide::LookUp::UnderWay)
        return true;
    const bool isWanted = side.isProxy || _parts.state.options.useKeychainPersistence;
    if (!isWanted || side.lookUp == ChallengeSide::LookUp::Done)
        return false;
    side.lookUp = ChallengeSide::LookUp::UnderWay;
    const auto took = [request = _request.weak_from_this(),
                       isProxy = side.isProxy](const std::optional<HTTPCredentials>& found) {
        if (const auto alive = std::static_pointer_cast<HTTPRequest>(request.lock()))
            alive->internals().resumeWithSavedCredentials(isProxy, found);
    };
    platform::sharedCredentialStorage().find(protectionSpace(_parts.state, side), took);
    return true;
}

void Authentication::savedCredentialsWereFound(bool forProxy,
                                               std::optional<HTTPCredentials> found) {
    ChallengeSide& side = forProxy ? _proxy : _server;
    side.lookUp = ChallengeSide::LookUp::Done;
    side.saved = std::move(found);
}

bool Authentication::willAskDelegate(const ChallengeSide& side) {
    if (_parts.state.isSynchronous)
        return false;
    const bool isAsked = side.isProxy ? _parts.notifier.askForProxyCredentials()
                                      : _parts.notifier.askForCredentials();
    if (isAsked)
        waitForOthers();
    return isAsked;
}

void Authentication::waitForOthers() {
    _parts.shared.waitingForCredentials.add(
        std::static_pointer_cast<HTTPRequest>(_request.shared_from_this()));
}

/// What has let this request in may let in those that somebody is still asked about.
void Authentication::tellOthers() {
    constexpr int firstFailure = 400;
    bool isNews = false;
    for (ChallengeSide* const side : {&_server, &_proxy}) {
        const bool wasKnown = std::exchange(side->accepted, side->credentials) == side->credentials;
        isNews = isNews || (side->credentials != nullptr && !wasKnown);
    }
    // Some servers forbid where they should ask again.
    if (!isNews || _parts.state.responseStatusCode >= firstFailure)
        return;
    // Later: each has a lock of its own, and this one's is held.
    _run.loopInUse()->post([waiting = _parts.shared.waitingForCredentials.takeAll()] {
        for (const auto& request : waiting)
            request->internals().resumeWithSessionCredentials();
    });
}

void Authentication::followOthers() {
    ChallengeSide& side =
        _parts.state.authenticationNeeded == AuthenticationNeeded::Proxy ? _proxy : _server;
    std::unique_lock guard(_parts.shared.delegateAuthenticationLock);
    if (hasEnded())
        return;
    const bool hasChallenge = side.authentication != nullptr || meetChallenge(side);
    if (!hasChallenge || !_applier.applySessionCredentials(side))
        return waitForOthers();
    guard.unlock();
    _run.startRequest();
}

void Authentication::credentialsWereSupplied() {
    const RequestOptions& options = _parts.state.options;
    _server.takeBackRefusal(options.username, options.password);
    _proxy.takeBackRefusal(options.proxyUsername, options.proxyPassword);
}

// Ends.

void Authentication::fail() {
    _run.failWithError(authenticationError());
}

void Authentication::failToApply(const ChallengeSide& side, const HTTPCredentials& credentials) {
    constexpr auto code = HTTPRequestErrorCode::ApplyingCredentials;
    const QString text = side.isProxy ? u"Failed to apply proxy credentials to request"_s
                                      : u"Failed to apply credentials to request"_s;
    const auto obstacle =
        side.authentication != nullptr ? side.authentication->obstacle(credentials) : std::nullopt;
    _run.failWithError(obstacle ? makeRequestError(code, text, *obstacle)
                                : makeRequestError(code, text));
}

void Authentication::forgetChallenges() {
    _server.forgetChallenge();
    _proxy.forgetChallenge();
}

void Authentication::leaveServer() {
    RequestOptions& options = _parts.state.options;
    for (QString* const text : {&options.username, &options.password, &options.domain})
        *text = QString();
    _server.credentials.reset();
    _server.refused.clear();
    _server.isToBeSaved = false;
    _server.scheme.clear();
    _server.realm.clear();
}

}  // namespace http
