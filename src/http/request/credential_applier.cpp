#include "http/request/credential_applier.h"

#include "http/request/request_state.h"
#include "http/shared/shared_state.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::HTTPAuthentication;

namespace {

QString headerName(const ChallengeSide& side) {
    return side.isProxy ? u"Proxy-Authorization"_s : u"Authorization"_s;
}

}  // namespace

bool CredentialApplier::answerAheadOfChallenge(ChallengeSide& side) {
    if (!parts_.state.options.useSessionPersistence)
        return false;
    const auto entry = findSessionCredentials(side);
    if (!entry)
        return false;
    if (entry->authentication != nullptr) {
        if (answerWith(side, entry->authentication, entry->credentials))
            return true;
        sessionEntries(side).remove(entry->credentials);
        return false;
    }
    return setBasicHeader(side, entry->credentials->username, entry->credentials->password);
}

bool CredentialApplier::setBasicHeader(const ChallengeSide& side, const QString& username,
                                       const QString& password) {
    const auto header = platform::basicAuthenticationHeader(username, password);
    if (header)
        parts_.state.request->headers.set(headerName(side), *header);
    return header.has_value();
}

SessionEntries& CredentialApplier::sessionEntries(const ChallengeSide& side) const {
    return side.isProxy ? parts_.shared.sessionProxyCredentials : parts_.shared.sessionCredentials;
}

std::optional<SessionEntry> CredentialApplier::findSessionCredentials(
    const ChallengeSide& side) const {
    const RequestOptions& options = parts_.state.options;
    if (side.isProxy)
        return sessionEntries(side).first([&](const SessionEntry& entry) {
            return entry.host == options.proxyHost && entry.port == options.proxyPort;
        });
    SessionSearch search{parts_.state.url, side.realm, {}, {}};
    if (!options.username.isEmpty() && !options.password.isEmpty()) {
        search.username = options.username;
        // The user may have answered better for another request.
        if (!side.isRefused(options.username, options.password))
            search.password = options.password;
    }
    return findSessionEntry(sessionEntries(side), search);
}

bool CredentialApplier::applySessionCredentials(ChallengeSide& side) {
    if (!parts_.state.options.useSessionPersistence)
        return false;
    const auto entry = findSessionCredentials(side);
    return entry && !side.isRefused(*entry->credentials) &&
           applyCredentials(side, entry->credentials);
}

bool CredentialApplier::applyCredentials(ChallengeSide& side, const Credentials& credentials) {
    ++side.retryCount;
    if (credentials == nullptr || side.authentication == nullptr || !parts_.state.request)
        return false;
    if (!answerWith(side, side.authentication, credentials)) {
        sessionEntries(side).remove(credentials);
        return false;
    }
    side.credentials = credentials;
    if (parts_.state.options.useSessionPersistence)
        storeInSession(side);
    return true;
}

bool CredentialApplier::answerWith(ChallengeSide& side,
                                   std::shared_ptr<HTTPAuthentication> authentication,
                                   const Credentials& credentials) {
    auto& headers = parts_.state.request->headers;
    const auto answer = authentication->answer(*credentials, *parts_.state.request, side.isProxy);
    if (!answer)
        return false;
    headers.remove(headerName(side));
    if (!answer->header.isEmpty())
        headers.set(headerName(side), answer->header);
    side.connection = answer->connection;
    side.answering = std::move(authentication);
    side.answeringCredentials = credentials;
    side.isAnswerUnsent = true;
    return true;
}

void CredentialApplier::storeInSession(const ChallengeSide& side) {
    SessionEntry entry;
    entry.authentication = side.authentication;
    entry.credentials = side.credentials;
    entry.authenticationScheme = side.scheme;
    if (side.isProxy) {
        entry.host = parts_.state.options.proxyHost;
        entry.port = parts_.state.options.proxyPort;
    } else {
        entry.authenticationRealm = side.realm;
        entry.url = parts_.state.url;
    }
    sessionEntries(side).store(std::move(entry));
}

}  // namespace http
