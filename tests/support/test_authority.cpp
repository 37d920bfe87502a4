#include "support/test_authority.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <QFile>
#include <cstdio>
#include <cstdlib>

namespace support {

namespace {

void require(bool succeeded) {
    if (!succeeded)
        std::abort();  // OpenSSL itself is broken; no test can go on.
}

void addExtension(X509* certificate, X509* issuer, int kind, const char* value) {
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value);
    require(extension != nullptr && X509_add_ext(certificate, extension, -1) == 1);
    X509_EXTENSION_free(extension);
}

}  // namespace

TestAuthority::TestAuthority()
    : key_(EVP_EC_gen("P-256"), &EVP_PKEY_free),
      certificate_(nullptr, &X509_free),
      context_(SSL_CTX_new(TLS_server_method()), &SSL_CTX_free) {
    certificate_ = issue(key_.get(), "Test Authority", nullptr);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
        std::fopen(QFile::encodeName(authoritiesPath()).constData(), "w"), &std::fclose);
    require(file && PEM_write_X509(file.get(), certificate_.get()) == 1);

    const Key serverKey(EVP_EC_gen("P-256"), &EVP_PKEY_free);
    const Certificate server = issue(serverKey.get(), "localhost", "DNS:localhost");
    require(SSL_CTX_use_certificate(context_.get(), server.get()) == 1);
    require(SSL_CTX_use_PrivateKey(context_.get(), serverKey.get()) == 1);
    SSL_CTX_set_mode(context_.get(), SSL_MODE_ENABLE_PARTIAL_WRITE);
}

TestAuthority::~TestAuthority() = default;

TestAuthority::Certificate TestAuthority::issue(evp_pkey_st* key, const char* commonName,
                                                const char* alternatives) const {
    constexpr long oneDay = 86400;
    Certificate made(X509_new(), &X509_free);
    X509* const issuer = certificate_ ? certificate_.get() : made.get();
    X509_set_version(made.get(), X509_VERSION_3);
    static long serial = 0;
    ASN1_INTEGER_set(X509_get_serialNumber(made.get()), ++serial);
    X509_gmtime_adj(X509_getm_notBefore(made.get()), -oneDay);
    X509_gmtime_adj(X509_getm_notAfter(made.get()), oneDay);
    X509_set_pubkey(made.get(), key);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(made.get()), "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>(commonName), -1, -1, 0);
    X509_set_issuer_name(made.get(), X509_get_subject_name(issuer));
    if (alternatives)
        addExtension(made.get(), issuer, NID_subject_alt_name, alternatives);
    else
        addExtension(made.get(), issuer, NID_basic_constraints, "critical,CA:TRUE");
    require(X509_sign(made.get(), key_.get(), EVP_sha256()) > 0);
    return made;
}

}  // namespace support
