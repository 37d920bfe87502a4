#pragma once

#include <QString>
#include <QTemporaryDir>
#include <memory>

struct evp_pkey_st;
struct ssl_ctx_st;
struct x509_st;

namespace support {

/// A certificate authority made for one test, with a certificate for "localhost" and one for a
/// client. Its files vanish with it.
class TestAuthority {
public:
    TestAuthority();
    ~TestAuthority();

    /// PEM files.
    [[nodiscard]] QString authoritiesPath() const {
        return folder_.filePath(QStringLiteral("ca.pem"));
    }
    [[nodiscard]] QString clientCertificatePath() const {
        return folder_.filePath(QStringLiteral("me.pem"));
    }
    [[nodiscard]] QString clientKeyPath() const {
        return folder_.filePath(QStringLiteral("me.key"));
    }

    [[nodiscard]] ssl_ctx_st* serverContext() const { return context_.get(); }

private:
    template <typename T>
    using Owned = std::unique_ptr<T, void (*)(T*)>;
    using Key = Owned<evp_pkey_st>;
    using Certificate = Owned<x509_st>;

    /// For `commonName`; with subject alternative names as OpenSSL writes them, or without.
    [[nodiscard]] Certificate issue(evp_pkey_st* key, const char* commonName,
                                    const char* alternatives) const;

    QTemporaryDir folder_;
    Key key_;
    Certificate certificate_;
    Owned<ssl_ctx_st> context_;
};

}  // namespace support
