#pragma once

#include <memory>
#include <optional>

#include "http/request/challenge_side.h"
#include "http/request/request_parts.h"

namespace http {

/// Puts credentials into a request's message, and shares with the session those that can be sent.
///
/// The request's loop, under its lock.
class CredentialApplier {
public:
    explicit CredentialApplier(RequestParts parts) : parts_(parts) {}

    /// To the challenge that was met. False: they cannot be sent.
    [[nodiscard]] bool applyCredentials(ChallengeSide& side, const Credentials& credentials);
    /// The same with what has let another request in. False: there is nothing, or nothing new.
    [[nodiscard]] bool applySessionCredentials(ChallengeSide& side);
    /// With what has let another request in, before there is a challenge.
    [[nodiscard]] bool answerAheadOfChallenge(ChallengeSide& side);
    [[nodiscard]] bool answerWith(ChallengeSide& side,
                                  std::shared_ptr<platform::HTTPAuthentication> authentication,
                                  const Credentials& credentials);
    [[nodiscard]] bool setBasicHeader(const ChallengeSide& side, const QString& username,
                                      const QString& password);

    [[nodiscard]] SessionEntries& sessionEntries(const ChallengeSide& side) const;
    [[nodiscard]] std::optional<SessionEntry> findSessionCredentials(
        const ChallengeSide& side) const;

private:
    void storeInSession(const ChallengeSide& side);

    RequestParts parts_;
};

}  // namespace http
