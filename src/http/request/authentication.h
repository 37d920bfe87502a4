#pragma once

#include <optional>

#include "http/request/challenge_side.h"
#include "http/request/credential_applier.h"
#include "http/request/request_parts.h"
#include "platform/base/error.h"

namespace http {

class HTTPRequest;
class RequestRun;

/// Answers the challenges that one request meets: with what let others in during this run, with
/// what the request was given, with what is saved, and at last by asking its delegate.
///
/// The request's loop, under its lock.
class Authentication {
public:
    Authentication(HTTPRequest& request, RequestParts parts, RequestRun& run);

    /// Adds what is known before any challenge to the message that has just been made.
    void applyAuthorizationHeader();
    /// The caller adds the header by itself; a success is remembered.
    void assumeBasicScheme() { server_.scheme = platform::authenticationSchemeBasic; }
    /// The message is about to be sent, perhaps not for the first time.
    void prepareSend();
    /// A response that asks for nothing has come: what was sent has worked.
    void credentialsWereAccepted();
    /// Goes on after a response with status 401 or 407 has come to its end.
    void attemptToApplyCredentialsAndResume();
    /// Somebody has answered the question, though perhaps with the same as before.
    void credentialsWereSupplied();
    /// Another request has been let in, and this one may go in behind it.
    void followOthers();
    void savedCredentialsWereFound(bool forProxy, std::optional<platform::HTTPCredentials> found);

    /// Another address: what is known of the last challenge does not hold there.
    void forgetChallenges();
    /// Another server: it gets nothing of what was meant for the last one.
    void leaveServer();

    [[nodiscard]] const ChallengeSide& server() const { return server_; }
    [[nodiscard]] const ChallengeSide& proxy() const { return proxy_; }

private:
    void attempt(ChallengeSide& side);
    [[nodiscard]] bool meetChallenge(ChallengeSide& side);
    void answerChallenge(ChallengeSide& side);
    void answerAgain(ChallengeSide& side);
    void answerFromSearch(ChallengeSide& side);
    void takeRefusal(ChallengeSide& side, const platform::Error& reason);

    [[nodiscard]] bool hasEnded() const;
    [[nodiscard]] bool lookUpSaved(ChallengeSide& side);
    [[nodiscard]] bool willAskDelegate(const ChallengeSide& side);
    void waitForOthers();
    void tellOthers();
    void fail();
    void failToApply(const ChallengeSide& side, const platform::HTTPCredentials& credentials);

    HTTPRequest& request_;
    RequestParts parts_;
    RequestRun& run_;
    CredentialApplier applier_;
    ChallengeSide server_{false};
    ChallengeSide proxy_{true};
};

}  // namespace http
