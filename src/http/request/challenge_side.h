#pragma once

#include <QString>
#include <memory>
#include <optional>
#include <vector>

#include "http/shared/session_credentials.h"
#include "platform/net/http_authentication.h"

namespace http {

/// What one request knows of the challenges of its server, or of its proxy.
struct ChallengeSide {
    explicit ChallengeSide(bool proxy) : isProxy(proxy) {}

    const bool isProxy;
    /// Of the challenge that was met; null: none.
    std::shared_ptr<platform::HTTPAuthentication> authentication;
    Credentials credentials;  ///< Applied last; null: none.
    QString scheme, realm;
    int retryCount = 0;  ///< How often credentials have been applied.
    /// Turned down, and not to be sent again unless the user says them once more.
    std::vector<platform::HTTPCredentials> refused;

    /// What the persistent store knows.
    enum class LookUp { NotBegun, UnderWay, Done } lookUp = LookUp::NotBegun;
    std::optional<platform::HTTPCredentials> saved;
    bool isToBeSaved = false;  ///< The credentials, once they have been accepted.
    Credentials accepted;      ///< Have let this request in; null: none.

    /// What the message answers with, which need not be to a challenge of this request's own.
    std::shared_ptr<platform::HTTPAuthentication> answering;
    Credentials answeringCredentials;
    bool isAnswerUnsent = false;
    platform::ConnectionCredentials connection;

    [[nodiscard]] bool isRefused(const platform::HTTPCredentials& other) const;
    /// Whatever the domain.
    [[nodiscard]] bool isRefused(const QString& username, const QString& password) const;
    void takeBackRefusal(const QString& username, const QString& password);
    /// The challenge is another address's.
    void forgetChallenge();
};

}  // namespace http
