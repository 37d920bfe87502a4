#include "http/request/credential_search.h"

#include <QStringList>
#include <vector>

#include "http/http_request.h"
#include "http/request/request_state.h"

namespace http {

using platform::HTTPCredentials;

namespace {

/// Every place that has both a name and a password, the first to be tried first.
class Candidates {
public:
    explicit Candidates(const ChallengeSide& side) : side_(side) {}

    /// An empty password is one; a null one is none. `otherDomain` counts where the name has none.
    void add(const QString& username, const QString& password, const QString& domain,
             const QString& otherDomain = {}) {
        if (!username.isEmpty() && !password.isNull())
            list_.push_back(complete({username, password, domain}, otherDomain));
    }

    [[nodiscard]] std::optional<HTTPCredentials> firstNotRefused() const {
        for (const HTTPCredentials& candidate : list_) {
            if (!side_.isRefused(candidate))
                return candidate;
        }
        return std::nullopt;
    }

private:
    /// A domain may stand before the user's name.
    [[nodiscard]] HTTPCredentials complete(HTTPCredentials credentials,
                                           const QString& otherDomain) const {
        const bool hasAccountDomain =
            side_.authentication != nullptr && side_.authentication->requiresAccountDomain();
        if (!hasAccountDomain) {
            credentials.accountDomain.clear();
            return credentials;
        }
        if (!credentials.accountDomain.isEmpty())
            return credentials;
        const QStringList parts = credentials.username.split(u'\\');
        credentials.accountDomain = parts.size() == 2 ? parts[0] : otherDomain;
        if (parts.size() == 2)
            credentials.username = parts[1];
        return credentials;
    }

    const ChallengeSide& side_;
    std::vector<HTTPCredentials> list_;
};

void addForServer(Candidates& candidates, const RequestState& state) {
    const RequestOptions& options = state.options;
    candidates.add(state.url.user(), state.url.password(), options.domain);
    // A probe that was sent elsewhere must not take the secrets of its request along.
    const HTTPRequest* const main = state.mainRequest.get();
    if (main != nullptr && main->url().hasSameOrigin(state.url))
        candidates.add(main->username(), main->password(), options.domain);
    candidates.add(options.username, options.password, options.domain);
}

void addForProxy(Candidates& candidates, const RequestState& state, const ChallengeSide& side) {
    const RequestOptions& options = state.options;
    const auto add = [&](const QString& username, const QString& password) {
        candidates.add(username, password, options.proxyDomain, options.domain);
    };
    if (const HTTPRequest* const main = state.mainRequest.get())
        add(main->proxyUsername(), main->proxyPassword());
    add(options.proxyUsername, options.proxyPassword);
    if (side.scheme == platform::authenticationSchemeNTLM)
        add(options.username, options.password);
}

}  // namespace

std::optional<HTTPCredentials> findCredentials(const RequestState& state,
                                               const ChallengeSide& side) {
    Candidates candidates(side);
    if (side.isProxy)
        addForProxy(candidates, state, side);
    else
        addForServer(candidates, state);
    if (side.saved)
        candidates.add(side.saved->username, side.saved->password, side.saved->accountDomain);
    return candidates.firstNotRefused();
}

platform::ProtectionSpace protectionSpace(const RequestState& state, const ChallengeSide& side) {
    if (side.isProxy)
        return {state.options.proxyHost, state.options.proxyPort, {}, side.realm, true};
    return {state.url.host(), state.url.port().value_or(0), state.url.scheme(), side.realm, false};
}

bool usesHttpProxy(const RequestState& state) {
    const RequestOptions& options = state.options;
    const bool isSocks =
        options.proxyType == proxyTypeSOCKS || options.proxyType == proxyTypeSOCKS4;
    return !options.proxyHost.isEmpty() && options.proxyPort != 0 && !isSocks;
}

}  // namespace http
