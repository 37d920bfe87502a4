#include "platform/net/digest_authentication.h"

#include <openssl/evp.h>

#include <QCryptographicHash>
#include <QList>
#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

bool hasControlCharacters(const QByteArray& text) {
    return std::any_of(text.begin(), text.end(), [](char c) {
        const auto code = static_cast<unsigned char>(c);
        return code < 0x20 || code == 0x7f;
    });
}

QByteArray quoted(QByteArray text) {
    text.replace('\\', "\\\\").replace('"', "\\\"");
    return '"' + text + '"';
}

/// False: unknown.
bool setAlgorithm(DigestChallenge& digest, const QByteArray& algorithm) {
    QByteArray name = algorithm.toUpper();
    digest.algorithm = algorithm;
    digest.isForSession = name.endsWith("-SESS");
    if (digest.isForSession)
        name.chop(5);
    if (name == "SHA-256")
        digest.hash = DigestHash::Sha256;
    else if (name == "SHA-512-256")
        digest.hash = DigestHash::Sha512_256;
    else
        return name.isEmpty() || name == "MD5";
    return true;
}

/// False: only kinds of protection that we do not have.
bool setProtection(DigestChallenge& digest, const QString& kinds) {
    for (const QString& kind : kinds.split(u','))
        digest.protectsRequestLine = digest.protectsRequestLine ||
                                     kind.trimmed().compare("auth"_L1, Qt::CaseInsensitive) == 0;
    return digest.protectsRequestLine;
}

/// Not the first half of SHA-512: it begins from other values (FIPS 180-4, 6.7).
QByteArray sha512_256(const QByteArray& text) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> hash{};
    unsigned size = 0;
    const int done = EVP_Digest(text.constData(), static_cast<std::size_t>(text.size()),
                                hash.data(), &size, EVP_sha512_256(), nullptr);
    return {reinterpret_cast<const char*>(hash.data()), done == 1 ? static_cast<int>(size) : 0};
}

QByteArray hashed(const DigestChallenge& challenge, const QByteArray& text) {
    switch (challenge.hash) {
        case DigestHash::Sha256:
            return QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex();
        case DigestHash::Sha512_256:
            return sha512_256(text).toHex();
        case DigestHash::Md5:
            break;
    }
    return QCryptographicHash::hash(text, QCryptographicHash::Md5).toHex();
}

QByteArray countText(quint32 count) {
    return QByteArray::number(count, 16).rightJustified(8, '0');
}

QByteArray response(const DigestChallenge& challenge, const DigestAnswerParts& parts) {
    QByteArray secret =
        hashed(challenge, parts.user + ':' + challenge.realm + ':' + parts.password);
    if (challenge.isForSession)
        secret = hashed(challenge, secret + ':' + challenge.nonce + ':' + parts.clientNonce);
    QByteArray text = secret + ':' + challenge.nonce + ':';
    if (challenge.protectsRequestLine)
        text += countText(parts.count) + ':' + parts.clientNonce + ":auth:";
    return hashed(challenge, text + hashed(challenge, parts.method + ':' + parts.target));
}

}  // namespace

std::optional<DigestChallenge> digestChallenge(const HTTPChallenge& challenge) {
    const auto& parameters = challenge.parameters;
    DigestChallenge digest;
    digest.realm = parameters.value(u"realm"_s).toUtf8();
    digest.nonce = parameters.value(u"nonce"_s).toUtf8();
    if (parameters.contains(u"opaque"_s))
        digest.opaque = parameters.value(u"opaque"_s).toUtf8();
    digest.hidesName = parameters.value(u"userhash"_s).compare("true"_L1, Qt::CaseInsensitive) == 0;
    digest.isStale = parameters.value(u"stale"_s).compare("true"_L1, Qt::CaseInsensitive) == 0;
    const bool isSendable = !digest.nonce.isEmpty() && !hasControlCharacters(digest.nonce) &&
                            !hasControlCharacters(digest.realm) &&
                            !hasControlCharacters(digest.opaque.value_or(QByteArray()));
    if (!isSendable || !setAlgorithm(digest, parameters.value(u"algorithm"_s).toUtf8()))
        return std::nullopt;
    if (parameters.contains(u"qop"_s) && !setProtection(digest, parameters.value(u"qop"_s)))
        return std::nullopt;
    return digest;
}

std::optional<QByteArray> digestAnswer(const DigestChallenge& challenge,
                                       const DigestAnswerParts& parts) {
    if (hasControlCharacters(parts.user))
        return std::nullopt;
    const QByteArray name =
        challenge.hidesName ? hashed(challenge, parts.user + ':' + challenge.realm) : parts.user;
    QList<QByteArray> fields{
        "username=" + quoted(name),
        "realm=" + quoted(challenge.realm),
        "nonce=" + quoted(challenge.nonce),
        "uri=" + quoted(parts.target),
        "response=" + quoted(response(challenge, parts)),
    };
    if (!challenge.algorithm.isEmpty())
        fields += "algorithm=" + challenge.algorithm;
    if (challenge.hidesName)
        fields += "userhash=true";
    if (challenge.opaque)
        fields += "opaque=" + quoted(*challenge.opaque);
    if (challenge.protectsRequestLine)
        fields += "qop=auth, nc=" + countText(parts.count);
    if (challenge.protectsRequestLine || challenge.isForSession)
        fields += "cnonce=" + quoted(parts.clientNonce);
    return "Digest " + fields.join(", ");
}

}  // namespace platform
