#pragma once

#include <QByteArray>
#include <optional>

#include "platform/net/http_challenge.h"

namespace platform {

enum class DigestHash { Md5, Sha256, Sha512_256 };

/// A challenge of the Digest scheme that can be answered (RFC 7616): any of its algorithms, plain
/// or for a session, without protection or with that of the request line.
struct DigestChallenge {
    QByteArray realm, nonce;
    std::optional<QByteArray> opaque;
    QByteArray algorithm;  ///< As written. Empty: none was, which means MD5.
    DigestHash hash = DigestHash::Md5;
    bool isForSession = false;
    bool protectsRequestLine = false;
    bool hidesName = false;  ///< The user's name is sent as a hash.
    bool isStale = false;    ///< What was answered was right, but its nonce too old.
};

/// Nothing: it cannot be answered, because of what it asks for or because its texts could not be
/// sent back.
[[nodiscard]] std::optional<DigestChallenge> digestChallenge(const HTTPChallenge& challenge);

/// What an answer is made of, beside the challenge.
struct DigestAnswerParts {
    QByteArray user, password;
    QByteArray method, target;  ///< As in the request line.
    QByteArray clientNonce;     ///< The same for all answers to one nonce.
    quint32 count = 1;          ///< Which answer to that nonce this is.
};

/// The value of "Authorization" or "Proxy-Authorization". Nothing: the user's name cannot be sent.
[[nodiscard]] std::optional<QByteArray> digestAnswer(const DigestChallenge& challenge,
                                                     const DigestAnswerParts& parts);

}  // namespace platform
