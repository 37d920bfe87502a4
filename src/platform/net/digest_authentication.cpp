#include "platform/net/digest_authentication.h"

#include <QList>
#include <algorithm>

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
    digest.hash = name == "SHA-256" ? QCryptographicHash::Sha256 : QCryptographicHash::Md5;
    return name.isEmpty() || name == "MD5" || name == "SHA-256";
}

/// False: only kinds of protection that we do not have.
bool setProtection(DigestChallenge& digest, const QString& kinds) {
    for (const QString& kind : kinds.split(u','))
        digest.protectsRequestLine = digest.protectsRequestLine ||
                                     kind.trimmed().compare("auth"_L1, Qt::CaseInsensitive) == 0;
    return digest.protectsRequestLine;
}

QByteArray hashed(const DigestChallenge& challenge, const QByteArray& text) {
    return QCryptographicHash::hash(text, challenge.hash).toHex();
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
    QList<QByteArray> fields{
        "username=" + quoted(parts.user),
        "realm=" + quoted(challenge.realm),
        "nonce=" + quoted(challenge.nonce),
        "uri=" + quoted(parts.target),
        "response=" + quoted(response(challenge, parts)),
    };
    if (!challenge.algorithm.isEmpty())
        fields += "algorithm=" + challenge.algorithm;
    if (challenge.opaque)
        fields += "opaque=" + quoted(*challenge.opaque);
    if (challenge.protectsRequestLine)
        fields += "qop=auth, nc=" + countText(parts.count);
    if (challenge.protectsRequestLine || challenge.isForSession)
        fields += "cnonce=" + quoted(parts.clientNonce);
    return "Digest " + fields.join(", ");
}

}  // namespace platform
