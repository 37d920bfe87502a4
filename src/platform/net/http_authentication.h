#pragma once

#include <QString>
#include <memory>
#include <mutex>
#include <optional>

#include "platform/base/error.h"
#include "platform/net/digest_authentication.h"
#include "platform/net/http_message.h"
#include "platform/net/http_read_stream.h"

namespace platform {

/// Names of the methods.
inline const QString authenticationSchemeBasic = QStringLiteral("Basic");
inline const QString authenticationSchemeDigest = QStringLiteral("Digest");
inline const QString authenticationSchemeNTLM = QStringLiteral("NTLM");
inline const QString authenticationSchemeNegotiate = QStringLiteral("Negotiate");

/// Why an authentication object cannot be used any more.
inline const QString httpStreamErrorDomain = QStringLiteral("kCFStreamErrorDomainHTTP");
enum HTTPStreamErrorCode {
    httpStreamErrorTypeUnsupported = -1000,
    httpStreamErrorBadUserName = -1001,
    httpStreamErrorBadPassword = -1002,
    httpStreamErrorUnsendable = -1003,  ///< The method has no way to send such credentials.
};

/// Who somebody is to a server or proxy.
struct HTTPCredentials {
    QString username, password;
    QString accountDomain;  ///< NTLM; may be empty.

    friend bool operator==(const HTTPCredentials&, const HTTPCredentials&) = default;
};

/// What a request carries to answer a challenge: a header, or what the transport negotiates.
struct HTTPAuthenticationAnswer {
    QString header;  ///< Value of "Authorization" or "Proxy-Authorization"; empty: none.
    ConnectionCredentials connection;
};

/// "Basic" and the credentials in UTF-8. Nothing: the name holds a colon (RFC 7617, 2).
[[nodiscard]] std::optional<QString> basicAuthenticationHeader(const QString& username,
                                                               const QString& password);

/// What one server or proxy wants to know, and the answers to it. Of several methods on offer the
/// first of Negotiate, Digest with SHA-512-256, SHA-256 or MD5, NTLM and Basic is used.
///
/// Several requests may answer with one object, so that all count as answers to one nonce. Any
/// thread.
class HTTPAuthentication {
public:
    /// From a response with status 401 or 407. Null: it offers no method that we know.
    [[nodiscard]] static std::shared_ptr<HTTPAuthentication> createFromResponse(
        const HTTPResponseHead& response);

    [[nodiscard]] QString method() const;
    /// Without control characters; may be empty.
    [[nodiscard]] QString realm() const;
    [[nodiscard]] bool requiresAccountDomain() const;
    /// False: the transport finds out by itself who the user is.
    [[nodiscard]] bool requiresUserNameAndPassword() const;

    /// Looks at the response to what was answered last. Nothing: the object can be used, perhaps
    /// with another method than before; what was answered is not to blame. A server that goes on
    /// finding its own nonces too old is not believed for long.
    [[nodiscard]] std::optional<Error> considerResponse(const HTTPResponseHead& response);

    /// Why such credentials cannot be sent, in plain words. Nothing: they can.
    [[nodiscard]] std::optional<Error> obstacle(const HTTPCredentials& credentials) const;
    /// `forProxy`: the message goes to the proxy itself. Nothing: there is an obstacle.
    [[nodiscard]] std::optional<HTTPAuthenticationAnswer> answer(const HTTPCredentials& credentials,
                                                                 const HTTPRequestMessage& message,
                                                                 bool forProxy);

private:
    enum class Scheme { Negotiate, Digest, NTLM, Basic };
    [[nodiscard]] QString obstacleText(const HTTPCredentials& credentials) const;

    HTTPAuthentication() = default;

    bool choose(const std::vector<HTTPChallenge>& challenges, bool mayNegotiate);
    [[nodiscard]] bool use(const HTTPChallenge& challenge);
    [[nodiscard]] bool takeNewNonce(const std::vector<HTTPChallenge>& challenges);
    void setDigest(DigestChallenge challenge);
    [[nodiscard]] std::optional<QString> digestHeader(const HTTPCredentials& credentials,
                                                      const HTTPRequestMessage& message,
                                                      bool forProxy);

    mutable std::mutex lock_;  ///< Guards all that follows.
    Scheme scheme_ = Scheme::Basic;
    QString realm_;
    DigestChallenge digest_;
    QByteArray clientNonce_;
    quint32 answersToNonce_ = 0;
    int staleNonces_ = 0;
    bool isAnswered_ = false;
};

}  // namespace platform
