#include "app/authentication/http_authentication_manager.h"

#include <algorithm>

#include "app/settings.h"
#include "http/http_request.h"
#include "links/names/file_names.h"
#include "links/text/localization.h"
#include "platform/base/user_defaults.h"

namespace app {

using namespace Qt::Literals::StringLiterals;
using http::HTTPRequest;
using links::filledFormat;
using links::localized;

namespace {

constexpr int proxyNeeded = 2;

bool isAboutProxy(const HTTPRequest& request) {
    return request.authenticationNeeded() == proxyNeeded;
}

QString schemeOf(const HTTPRequest& request) {
    return isAboutProxy(request) ? request.proxyAuthenticationScheme()
                                 : request.authenticationScheme();
}

/// A server's words cannot pass for ours: one line of moderate length, written in one direction.
QString harmless(QString text) {
    constexpr qsizetype longest = 120;
    text.removeIf([](QChar c) {
        const auto category = c.category();
        return category == QChar::Other_Control || category == QChar::Other_Format ||
               category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
    });
    return text.size() > longest ? text.left(longest - 1) + u'…' : text;
}

QString explanation(const HTTPRequest& request) {
    const QString name = harmless(links::filename(request.url()));
    const QString realm = harmless(request.protectionSpace().realm);
    if (realm.isEmpty())
        return filledFormat(localized("You need to log in before downloading \"%@\"."), {name});
    return filledFormat(localized("You need to log in before downloading \"%@\" from \"%@\"."),
                        {name, realm});
}

/// What must be the same for two requests to be let in by the same answer. Servers are told apart
/// by the scheme of their addresses, proxies by what they ask for.
struct Door {
    explicit Door(const HTTPRequest& request)
        : needed(request.authenticationNeeded()),
          host(request.url().host()),
          port(request.url().port()),
          scheme(isAboutProxy(request) ? request.proxyAuthenticationScheme()
                                       : request.url().scheme()),
          hasRealm(!request.authenticationRealm().isEmpty()) {}

    /// Without a port in its address a request is answered for itself alone.
    [[nodiscard]] bool letsIn(const Door& other) const {
        return needed == other.needed && !host.isEmpty() && host == other.host &&
               port.has_value() && port == other.port && scheme == other.scheme &&
               (hasRealm || !other.hasRealm);
    }

    int needed;
    QString host;
    std::optional<int> port;
    QString scheme;
    bool hasRealm;
};

void apply(const AuthenticationAnswer& answer, bool isNTLM, HTTPRequest& request) {
    // An answer that was left empty is one; a null text would be none.
    const auto given = [](const QString& text) { return text.isNull() ? u""_s : text; };
    if (!answer.storesPassword)
        request.setUseKeychainPersistence(false);
    if (isAboutProxy(request)) {
        if (isNTLM)
            request.setProxyDomain(given(answer.domain));
        request.setProxyUsername(given(answer.name));
        request.setProxyPassword(given(answer.password));
    } else {
        if (isNTLM)
            request.setDomain(given(answer.domain));
        request.setUsername(given(answer.name));
        request.setPassword(given(answer.password));
    }
    request.retryUsingSuppliedCredentials();
}

}  // namespace

DQHTTPAuthenticationManager::DQHTTPAuthenticationManager(AuthenticationPrompt* prompt,
                                                         platform::UserDefaults& defaults)
    : _prompt(prompt), _defaults(defaults) {}

DQHTTPAuthenticationManager::~DQHTTPAuthenticationManager() {
    if (_prompt != nullptr)
        _prompt->close();
}

void DQHTTPAuthenticationManager::acquireAuthenticationForRequest(HTTPRequest& request) {
    auto shared = std::static_pointer_cast<HTTPRequest>(request.shared_from_this());
    // A proxy's question is put twice when nothing else turns up in the meantime.
    if (std::find(_pendingRequests.begin(), _pendingRequests.end(), shared) !=
        _pendingRequests.end())
        return;
    _pendingRequests.push_back(std::move(shared));
    if (_prompt != nullptr && _prompt->isVisible())
        return;
    if (!promptForNextAuthentication()) {
        for (const Request& waiting : std::exchange(_pendingRequests, {}))
            waiting->cancelAuthentication();
    }
}

void DQHTTPAuthenticationManager::cancelAuthenticationForRequest(const HTTPRequest& request) {
    const auto found =
        std::find_if(_pendingRequests.begin(), _pendingRequests.end(),
                     [&](const Request& pending) { return pending.get() == &request; });
    removePendingRequestAtIndex(static_cast<std::size_t>(found - _pendingRequests.begin()));
}

void DQHTTPAuthenticationManager::removePendingRequestAtIndex(std::size_t index) {
    if (index >= _pendingRequests.size())
        return;
    _pendingRequests.erase(_pendingRequests.begin() + static_cast<std::ptrdiff_t>(index));
    if (index == 0)
        promptOrClose();
}

void DQHTTPAuthenticationManager::promptOrClose() {
    if (!promptForNextAuthentication() && _prompt != nullptr)
        _prompt->close();
}

AuthenticationQuestion DQHTTPAuthenticationManager::question() const {
    const HTTPRequest& request = *_pendingRequests.front();
    const platform::ProtectionSpace space = request.protectionSpace();
    const bool isSecure = space.receivesCredentialSecurely(schemeOf(request));
    AuthenticationQuestion question;
    question.explanation = explanation(request);
    question.securityInfo = isSecure ? localized("Your password will be submitted securely.")
                                     : localized("Your password will be submitted as plain text.");
    question.host = harmless(space.host);
    if (space.port != 0)
        question.host += u':' + QString::number(space.port);
    question.isForProxy = space.isProxy;
    question.needsDomain = schemeOf(request) == platform::authenticationSchemeNTLM;
    question.storesPassword = _defaults.get(settings::storePasswordsInKeychain);
    return question;
}

bool DQHTTPAuthenticationManager::promptForNextAuthentication() {
    if (_pendingRequests.empty() || _prompt == nullptr)
        return false;
    return _prompt->show(question(), *this);
}

void DQHTTPAuthenticationManager::applyCredentialsFromDialog(const AuthenticationAnswer& answer) {
    if (_pendingRequests.empty())
        return _prompt->close();
    // What holds for this run only does not become the user's choice by being left as it is.
    if (answer.storesPassword != _defaults.get(settings::storePasswordsInKeychain))
        _defaults.set(settings::storePasswordsInKeychain, answer.storesPassword);
    const Request first = _pendingRequests.front();
    const Door door(*first);
    // The domain is for proxies: a server's user writes it before the name.
    const bool isNTLM = door.scheme == platform::authenticationSchemeNTLM;
    std::erase_if(_pendingRequests, [&](const Request& request) {
        if (request != first && !door.letsIn(Door(*request)))
            return false;
        apply(answer, isNTLM, *request);
        return true;
    });
    promptOrClose();
}

void DQHTTPAuthenticationManager::cancelDialog() {
    if (_pendingRequests.empty())
        return _prompt->close();
    _pendingRequests.front()->cancelAuthentication();
    removePendingRequestAtIndex(0);
}

}  // namespace app
