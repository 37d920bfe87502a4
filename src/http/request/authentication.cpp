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
    : request_(request), parts_(parts), run_(run), applier_(parts) {}

// Ahead of a challenge.

void Authentication::applyAuthorizationHeader() {
    const RequestOptions& options = parts_.state.options;
    for (ChallengeSide* const side : {&server_, &proxy_}) {
        side->answering.reset();
        side->connection = {};
    }
    if (!options.shouldPresentCredentialsBeforeChallenge)
        return;
    const bool isGivenHeader = options.requestHeaders.contains(u"Authorization"_s);
    const bool isKnownToBeBasic = server_.scheme == platform::authenticationSchemeBasic;
    if (!isGivenHeader && isKnownToBeBasic && !options.username.isEmpty() &&
        !options.password.isNull()) {
        static_cast<void>(applier_.setBasicHeader(server_, options.username, options.password));
    } else if (!isGivenHeader && applier_.answerAheadOfChallenge(server_)) {
        server_.scheme = server_.answering != nullptr ? server_.answering->method()
                                                      : platform::authenticationSchemeBasic;
    }
}

void Authentication::prepareSend() {
    // The proxy may have been found only after the message was made.
    if (proxy_.answering == nullptr && usesHttpProxy(parts_.state) &&
        parts_.state.options.shouldPresentCredentialsBeforeChallenge)
        static_cast<void>(applier_.answerAheadOfChallenge(proxy_));
    for (ChallengeSide* const side : {&server_, &proxy_}) {
        // No server takes the same answer twice.
        if (side->answering != nullptr && !side->isAnswerUnsent)
            static_cast<void>(
                applier_.answerWith(*side, side->answering, side->answeringCredentials));
        side->isAnswerUnsent = false;
    }
}

void Authentication::credentialsWereAccepted() {
    const RequestOptions& options = parts_.state.options;
    tellOthers();
    for (ChallengeSide* const side : {&server_, &proxy_}) {
        if (!std::exchange(side->isToBeSaved, false))
            continue;
        platform::sharedCredentialStorage().save(protectionSpace(parts_.state, *side),
                                                 *side->credentials);
    }
    const bool wasSentAhead = server_.authentication == nullptr && server_.answering == nullptr &&
                              server_.scheme == platform::authenticationSchemeBasic;
    if (!wasSentAhead || !options.useSessionPersistence || options.username.isEmpty() ||
        options.password.isNull() || applier_.findSessionCredentials(server_))
        return;
    SessionEntry entry;
    entry.credentials = std::make_shared<const HTTPCredentials>(
        HTTPCredentials{options.username, options.password, {}});
    entry.authenticationScheme = server_.scheme;
    entry.url = parts_.state.url;
    parts_.shared.sessionCredentials.store(std::move(entry));
}

// After a challenge.

bool Authentication::hasEnded() const {
    return parts_.state.error || parts_.state.isCancelled();
}

void Authentication::attemptToApplyCredentialsAndResume() {
    if (!hasEnded())
        attempt(parts_.state.sequel == Sequel::ProxyCredentials ? proxy_ : server_);
}

void Authentication::attempt(ChallengeSide& side) {
    const auto head = parts_.stream.responseHead();
    if (side.authentication == nullptr && !meetChallenge(side)) {
        run_.cancelLoad();
        run_.failWithError(
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
    const auto& head = parts_.stream.responseHead();
    if (!head)
        return false;
    // A server cannot ask for what is the proxy's.
    const bool isTunnelled = parts_.state.url.hasScheme("https");
    if (side.isProxy && (!usesHttpProxy(parts_.state) || (isTunnelled && !head->fromProxy)))
        return false;
    side.authentication = HTTPAuthentication::createFromResponse(*head);
    return side.authentication != nullptr;
}

void Authentication::answerChallenge(ChallengeSide& side) {
    run_.cancelLoad();
    if (side.credentials != nullptr) {
        answerAgain(side);
    } else if (!side.authentication->requiresUserNameAndPassword()) {
        const auto nobody = std::make_shared<const HTTPCredentials>();
        if (applier_.answerWith(side, side.authentication, nobody))
            run_.startRequest();
    } else {
        answerFromSearch(side);
    }
}

/// The same once more: nothing was wrong with it.
void Authentication::answerAgain(ChallengeSide& side) {
    const bool isNTLM = side.scheme == platform::authenticationSchemeNTLM;
    const bool hasGoneInCircles = isNTLM && side.retryCount > 1;
    if (!hasGoneInCircles && applier_.applyCredentials(side, side.credentials))
        run_.startRequest();
    else if (isNTLM && side.retryCount == 2)
        fail();
    else
        failToApply(side, *side.credentials);
}

void Authentication::answerFromSearch(ChallengeSide& side) {
    std::unique_lock guard(parts_.shared.delegateAuthenticationLock);
    if (hasEnded())
        return;
    if (applier_.applySessionCredentials(side)) {
        guard.unlock();
        run_.startRequest();
        return;
    }
    const auto found = findCredentials(parts_.state, side);
    if (found) {
        const bool isApplied =
            applier_.applyCredentials(side, std::make_shared<const HTTPCredentials>(*found));
        // A wrong password is no use to anybody, so it is saved when it has been accepted.
        side.isToBeSaved =
            isApplied && parts_.state.options.useKeychainPersistence && side.saved != *found;
        guard.unlock();
        if (isApplied)
            run_.startRequest();
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
        std::unique_lock guard(parts_.shared.delegateAuthenticationLock);
        if (side.credentials != nullptr) {
            applier_.sessionEntries(side).remove(side.credentials);
            side.refused.push_back(*side.credentials);
            side.credentials.reset();
        }
        if (hasEnded())
            return;
        if (meetChallenge(side) && applier_.applySessionCredentials(side)) {
            guard.unlock();
            run_.startRequest();
            return;
        }
        // The user may take any time.
        parts_.state.lastActivityTime.reset();
        if (willAskDelegate(side)) {
            // A proxy's question goes through the search once more while it is on its way: another
            // request may have been answered meanwhile.
            if (side.isProxy)
                attempt(side);
            return;
        }
    }
    run_.cancelLoad();
    fail();
}

// Asking.

/// True: the answer will come, and this goes on then.
bool Authentication::lookUpSaved(ChallengeSide& side) {
    if (side.lookUp == ChallengeSide::LookUp::UnderWay)
        return true;
    const bool isWanted = side.isProxy || parts_.state.options.useKeychainPersistence;
    if (!isWanted || side.lookUp == ChallengeSide::LookUp::Done)
        return false;
    side.lookUp = ChallengeSide::LookUp::UnderWay;
    const auto took = [request = request_.weak_from_this(),
                       isProxy = side.isProxy](const std::optional<HTTPCredentials>& found) {
        if (const auto alive = std::static_pointer_cast<HTTPRequest>(request.lock()))
            alive->internals().resumeWithSavedCredentials(isProxy, found);
    };
    platform::sharedCredentialStorage().find(protectionSpace(parts_.state, side), took);
    return true;
}

void Authentication::savedCredentialsWereFound(bool forProxy,
                                               std::optional<HTTPCredentials> found) {
    ChallengeSide& side = forProxy ? proxy_ : server_;
    side.lookUp = ChallengeSide::LookUp::Done;
    side.saved = std::move(found);
}

bool Authentication::willAskDelegate(const ChallengeSide& side) {
    if (parts_.state.role == RequestRole::Synchronous)
        return false;
    const bool isAsked = side.isProxy ? parts_.notifier.askForProxyCredentials()
                                      : parts_.notifier.askForCredentials();
    if (isAsked)
        waitForOthers();
    return isAsked;
}

void Authentication::waitForOthers() {
    parts_.shared.waitingForCredentials.add(
        std::static_pointer_cast<HTTPRequest>(request_.shared_from_this()));
}

/// What has let this request in may let in those that somebody is still asked about.
void Authentication::tellOthers() {
    constexpr int firstFailure = 400;
    bool isNews = false;
    for (ChallengeSide* const side : {&server_, &proxy_}) {
        const bool wasKnown = std::exchange(side->accepted, side->credentials) == side->credentials;
        isNews = isNews || (side->credentials != nullptr && !wasKnown);
    }
    // Some servers forbid where they should ask again.
    if (!isNews || parts_.state.responseStatusCode >= firstFailure)
        return;
    // Later: each has a lock of its own, and this one's is held.
    run_.loopInUse()->post([waiting = parts_.shared.waitingForCredentials.takeAll()] {
        for (const auto& request : waiting)
            request->internals().resumeWithSessionCredentials();
    });
}

void Authentication::followOthers() {
    ChallengeSide& side = parts_.state.sequel == Sequel::ProxyCredentials ? proxy_ : server_;
    std::unique_lock guard(parts_.shared.delegateAuthenticationLock);
    if (hasEnded())
        return;
    const bool hasChallenge = side.authentication != nullptr || meetChallenge(side);
    if (!hasChallenge || !applier_.applySessionCredentials(side))
        return waitForOthers();
    guard.unlock();
    run_.startRequest();
}

void Authentication::credentialsWereSupplied() {
    const RequestOptions& options = parts_.state.options;
    server_.takeBackRefusal(options.username, options.password);
    proxy_.takeBackRefusal(options.proxyUsername, options.proxyPassword);
}

// Ends.

void Authentication::fail() {
    run_.failWithError(authenticationError());
}

void Authentication::failToApply(const ChallengeSide& side, const HTTPCredentials& credentials) {
    constexpr auto code = HTTPRequestErrorCode::ApplyingCredentials;
    const QString text = side.isProxy ? u"Failed to apply proxy credentials to request"_s
                                      : u"Failed to apply credentials to request"_s;
    const auto obstacle =
        side.authentication != nullptr ? side.authentication->obstacle(credentials) : std::nullopt;
    run_.failWithError(obstacle ? makeRequestError(code, text, *obstacle)
                                : makeRequestError(code, text));
}

void Authentication::forgetChallenges() {
    server_.forgetChallenge();
    proxy_.forgetChallenge();
}

void Authentication::leaveServer() {
    RequestOptions& options = parts_.state.options;
    for (QString* const text : {&options.username, &options.password, &options.domain})
        *text = QString();
    server_.credentials.reset();
    server_.refused.clear();
    server_.isToBeSaved = false;
    server_.scheme.clear();
    server_.realm.clear();
}

}  // namespace http
