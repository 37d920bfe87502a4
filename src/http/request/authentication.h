#pragma once

namespace http {

class RequestRun;

/// Answers the challenges that one request meets.
///
/// Credentials are not supported yet: a challenge ends the request with code 3.
///
/// The request's loop, under its lock.
class Authentication {
public:
    explicit Authentication(RequestRun& run) : _run(run) {}

    /// Adds what is known before any challenge to the message that is about to be made.
    void applyAuthorizationHeader() {}
    /// The head of a response that asks for nothing has come: what was sent ahead has worked.
    void credentialsWereAccepted() {}
    /// Goes on after a response with status 401 or 407 has come to its end. Without the lock.
    void attemptToApplyCredentialsAndResume();
    /// Another address: what is known of the last challenge does not hold there.
    void forgetChallenges() {}

private:
    RequestRun& _run;
};

}  // namespace http
