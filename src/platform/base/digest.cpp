#include "platform/base/digest.h"

#include <openssl/evp.h>
#include <array>

namespace platform {
namespace {

const EVP_MD* methodFor(QCryptographicHash::Algorithm algorithm) {
    switch (algorithm) {
        case QCryptographicHash::Md5:
            return EVP_md5();
        case QCryptographicHash::Sha1:
            return EVP_sha1();
        case QCryptographicHash::Sha224:
            return EVP_sha224();
        case QCryptographicHash::Sha256:
            return EVP_sha256();
        case QCryptographicHash::Sha384:
            return EVP_sha384();
        case QCryptographicHash::Sha512:
            return EVP_sha512();
        default:
            return nullptr;
    }
}

}  // namespace

/// Systems that allow no weak algorithms have them in Qt alone, which is slower but knows all.
struct Digest::Private {
    explicit Private(QCryptographicHash::Algorithm algorithm)
        : context(EVP_MD_CTX_new()),
          isFast(context && methodFor(algorithm) &&
                 EVP_DigestInit_ex(context, methodFor(algorithm), nullptr) == 1),
          slow(algorithm) {}
    ~Private() { EVP_MD_CTX_free(context); }
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    EVP_MD_CTX* const context;
    const bool isFast;
    QCryptographicHash slow;
};

Digest::Digest(QCryptographicHash::Algorithm algorithm)
    : private_(std::make_unique<Private>(algorithm)) {}

Digest::~Digest() = default;

void Digest::add(QByteArrayView bytes) {
    if (private_->isFast)
        EVP_DigestUpdate(private_->context, bytes.data(), static_cast<std::size_t>(bytes.size()));
    else
        private_->slow.addData(bytes);
}

QByteArray Digest::result() {
    if (!private_->isFast)
        return private_->slow.result();
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned size = 0;
    const int isDone = EVP_DigestFinal_ex(private_->context, digest.data(), &size);
    return isDone == 1 ? QByteArray(reinterpret_cast<const char*>(digest.data()),
                                    static_cast<qsizetype>(size))
                       : QByteArray();
}

}  // namespace platform
