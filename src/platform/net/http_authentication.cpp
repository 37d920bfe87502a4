#include "platform/net/http_authentication.h"

#include <QRandomGenerator>
#include <algorithm>
#include <array>

#include "platform/net/status_codes.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// How often in a row a server may reject its own nonce as too old.
constexpr int mostStaleNonces = 3;

std::vector<HTTPChallenge> challengesOf(const HTTPResponseHead& response) {
    const QString name = response.statusCode == status::proxyAuthenticationRequired
                             ? u"Proxy-Authenticate"_s
                             : u"WWW-Authenticate"_s;
    return challengesFromFields(response.headers.values(name));
}

bool isDigestWith(const HTTPChallenge& offer, QLatin1String algorithm) {
    return offer.hasScheme("Digest"_L1) &&
           offer.parameters.value(u"algorithm"_s).startsWith(algorithm, Qt::CaseInsensitive);
}

/// The transport widens each byte of them to the 16 bits of NTLM.
bool isLatin1(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x100; });
}

QString withoutControlCharacters(QString text) {
    text.removeIf([](QChar c) { return c.category() == QChar::Other_Control; });
    return text;
}

QByteArray freshClientNonce() {
    std::array<quint32, 4> random{};
    QRandomGenerator::system()->fillRange(random.data(), random.size());
    return QByteArray(reinterpret_cast<const char*>(random.data()), sizeof(random)).toHex();
}

QString requestTarget(const Url& url) {
    const QString path = url.encodedPath();
    const QString target = path.isEmpty() ? u"/"_s : path;
    return url.query() ? target + u'?' + *url.query() : target;
}

}  // namespace

std::optional<QString> basicAuthenticationHeader(const QString& username, const QString& password) {
    if (username.contains(u':'))
        return std::nullopt;
    const QByteArray pair = (username + u':' + password).toUtf8();
    return u"Basic "_s + QString::fromLatin1(pair.toBase64());
}

std::shared_ptr<HTTPAuthentication> HTTPAuthentication::createFromResponse(
    const HTTPResponseHead& response) {
    std::shared_ptr<HTTPAuthentication> made(new HTTPAuthentication);
    return made->choose(challengesOf(response), true) ? made : nullptr;
}

bool HTTPAuthentication::choose(const std::vector<HTTPChallenge>& challenges, bool mayNegotiate) {
    using Wanted = bool (*)(const HTTPChallenge&);
    constexpr std::array<Wanted, 6> byRank{
        [](const HTTPChallenge& offer) { return offer.hasScheme("Negotiate"_L1); },
        [](const HTTPChallenge& offer) { return isDigestWith(offer, "SHA-512-256"_L1); },
        [](const HTTPChallenge& offer) { return isDigestWith(offer, "SHA-256"_L1); },
        [](const HTTPChallenge& offer) { return offer.hasScheme("Digest"_L1); },
        [](const HTTPChallenge& offer) { return offer.hasScheme("NTLM"_L1); },
        [](const HTTPChallenge& offer) { return offer.hasScheme("Basic"_L1); }};
    for (std::size_t rank = mayNegotiate ? 0 : 1; rank < byRank.size(); ++rank) {
        for (const HTTPChallenge& challenge : challenges) {
            if (byRank.at(rank)(challenge) && use(challenge))
                return true;
        }
    }
    return false;
}

bool HTTPAuthentication::use(const HTTPChallenge& challenge) {
    if (challenge.hasScheme("Digest"_L1)) {
        auto digest = digestChallenge(challenge);
        if (!digest)
            return false;
        setDigest(std::move(*digest));
        scheme_ = Scheme::Digest;
    } else {
        scheme_ = challenge.hasScheme("Negotiate"_L1) ? Scheme::Negotiate
                  : challenge.hasScheme("NTLM"_L1)    ? Scheme::NTLM
                                                      : Scheme::Basic;
    }
    realm_ = withoutControlCharacters(challenge.parameters.value(u"realm"_s));
    return true;
}

void HTTPAuthentication::setDigest(DigestChallenge challenge) {
    digest_ = std::move(challenge);
    clientNonce_ = freshClientNonce();
    answersToNonce_ = 0;
}

QString HTTPAuthentication::method() const {
    const std::scoped_lock guard(lock_);
    switch (scheme_) {
        case Scheme::Negotiate:
            return authenticationSchemeNegotiate;
        case Scheme::Digest:
            return authenticationSchemeDigest;
        case Scheme::NTLM:
            return authenticationSchemeNTLM;
        case Scheme::Basic:
            break;
    }
    return authenticationSchemeBasic;
}

QString HTTPAuthentication::realm() const {
    const std::scoped_lock guard(lock_);
    return realm_;
}

bool HTTPAuthentication::requiresAccountDomain() const {
    const std::scoped_lock guard(lock_);
    return scheme_ == Scheme::NTLM;
}

bool HTTPAuthentication::requiresUserNameAndPassword() const {
    const std::scoped_lock guard(lock_);
    return scheme_ != Scheme::Negotiate;
}

std::optional<Error> HTTPAuthentication::considerResponse(const HTTPResponseHead& response) {
    const std::scoped_lock guard(lock_);
    if (!isAnswered_)
        return std::nullopt;
    const auto challenges = challengesOf(response);
    // Without a ticket there is nothing to negotiate with, but a password may do.
    const bool wasNegotiated = scheme_ == Scheme::Negotiate;
    if (wasNegotiated ? choose(challenges, false) : takeNewNonce(challenges)) {
        isAnswered_ = false;
        return std::nullopt;
    }
    return Error{httpStreamErrorDomain,
                 wasNegotiated ? httpStreamErrorTypeUnsupported : httpStreamErrorBadPassword,
                 {},
                 nullptr};
}

bool HTTPAuthentication::takeNewNonce(const std::vector<HTTPChallenge>& challenges) {
    if (scheme_ != Scheme::Digest || staleNonces_ >= mostStaleNonces)
        return false;
    for (const HTTPChallenge& challenge : challenges) {
        auto digest = challenge.hasScheme("Digest"_L1) ? digestChallenge(challenge) : std::nullopt;
        if (!digest || !digest->isStale || digest->realm != digest_.realm ||
            digest->hash != digest_.hash)
            continue;
        ++staleNonces_;
        setDigest(std::move(*digest));
        return true;
    }
    return false;
}

QString HTTPAuthentication::obstacleText(const HTTPCredentials& credentials) const {
    switch (scheme_) {
        case Scheme::NTLM:
            if (!isLatin1(credentials.username + credentials.password + credentials.accountDomain))
                return u"NTLM cannot carry a character of the name, the password or the domain"_s;
            break;
        case Scheme::Digest:
            if (withoutControlCharacters(credentials.username) != credentials.username)
                return u"Digest cannot carry a character of the name"_s;
            break;
        case Scheme::Basic:
            // RFC 7617, 2.
            if (credentials.username.contains(u':'))
                return u"Basic cannot carry a name with a colon in it"_s;
            break;
        case Scheme::Negotiate:
            break;
    }
    return {};
}

std::optional<Error> HTTPAuthentication::obstacle(const HTTPCredentials& credentials) const {
    const std::scoped_lock guard(lock_);
    const QString text = obstacleText(credentials);
    return text.isEmpty() ? std::nullopt
                          : std::optional(Error{httpStreamErrorDomain, httpStreamErrorUnsendable,
                                                text, nullptr});
}

std::optional<HTTPAuthenticationAnswer> HTTPAuthentication::answer(
    const HTTPCredentials& credentials, const HTTPRequestMessage& message, bool forProxy) {
    const std::scoped_lock guard(lock_);
    if (!obstacleText(credentials).isEmpty())
        return std::nullopt;
    HTTPAuthenticationAnswer answer;
    std::optional<QString> header(QString{});
    switch (scheme_) {
        case Scheme::Negotiate:
            answer.connection.scheme = ConnectionAuthentication::Negotiate;
            break;
        case Scheme::NTLM:
            answer.connection = {ConnectionAuthentication::Ntlm, credentials.username,
                                 credentials.password, credentials.accountDomain};
            break;
        case Scheme::Digest:
            header = digestHeader(credentials, message, forProxy);
            break;
        case Scheme::Basic:
            header = basicAuthenticationHeader(credentials.username, credentials.password);
            break;
    }
    if (!header)
        return std::nullopt;
    answer.header = *header;
    isAnswered_ = true;
    return answer;
}

std::optional<QString> HTTPAuthentication::digestHeader(const HTTPCredentials& credentials,
                                                        const HTTPRequestMessage& message,
                                                        bool forProxy) {
    const Url& url = message.url;
    DigestAnswerParts parts;
    parts.user = credentials.username.toUtf8();
    parts.password = credentials.password.toUtf8();
    parts.clientNonce = clientNonce_;
    if (forProxy && url.hasScheme("https")) {
        // What the proxy is asked for is the tunnel.
        const QString host = url.host().contains(u':') ? u'[' + url.host() + u']' : url.host();
        parts.method = "CONNECT";
        parts.target = (host + u':' + QString::number(url.effectivePort().value_or(0))).toUtf8();
    } else {
        parts.method = message.method.toUtf8();
        parts.target = (forProxy ? url.absoluteString() : requestTarget(url)).toUtf8();
    }
    parts.count = ++answersToNonce_;
    const auto header = digestAnswer(digest_, parts);
    // Fields go out in ISO Latin 1, which keeps these bytes as they are.
    return header ? std::optional(QString::fromLatin1(*header)) : std::nullopt;
}

}  // namespace platform
