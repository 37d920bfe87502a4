#pragma once

#include <QString>
#include <QTemporaryDir>
#include <memory>

struct evp_pkey_st;
struct ssl_ctx_st;
struct x509_st;

namespace support {

/// A certificate authority made for one test, with a certificate for "localhost". Its file vanishes
/// with it.
class TestAuthority {
public:
    TestAuthority();
    ~TestAuthority();

    /// A PEM file.
    [[nodiscard]] QString authoritiesPath() const {
        return folder_.filePath(QStringLiteral("ca.pem"));
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
