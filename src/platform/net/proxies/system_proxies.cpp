#include "platform/net/proxies/system_proxies.h"

#include <QStandardPaths>

#include "platform/net/proxies/desktop_proxies.h"
#include "platform/net/proxies/proxy_exceptions.h"
#include "platform/net/proxies/proxy_text.h"

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

class UserProxies final : public SystemProxies {
public:
    explicit UserProxies(const QProcessEnvironment& environment)
        : environment_(environment),
          exceptions_(ProxyExceptions::fromText(variable(u"no_proxy"_s))) {}

    std::optional<std::vector<ProxyChoice>> proxiesForURL(const Url& url) const override {
        if (exceptions_.contain(url))
            return std::vector{ProxyChoice()};
        const auto choice = choiceFor(url);
        return choice ? std::optional(std::vector{*choice}) : std::nullopt;
    }

private:
    [[nodiscard]] std::optional<ProxyChoice> choiceFor(const Url& url) const {
        for (const QString& name : {url.scheme().toLower() + u"_proxy"_s, u"all_proxy"_s}) {
            const QString value = variable(name);
            if (value.isEmpty())
                continue;
            const auto proxy = proxyFromAddress(value);
            return proxy ? std::optional(ProxyChoice{*proxy, {}}) : std::nullopt;
        }
        if (const QString script = variable(u"auto_proxy"_s); !script.isEmpty())
            return scriptChoice(script);
        return desktopChoice(url);
    }

    /// Loading the shared settings costs a small program a tenth of its memory.
    [[nodiscard]] std::optional<ProxyChoice> desktopChoice(const Url& url) const {
        const QStringList desktops = environment_.value(u"XDG_CURRENT_DESKTOP"_s).split(u':');
        if (desktops.contains(u"KDE"_s))
            return proxyOfKdeSettings(kdeSettingsPath(), url);
        return desktops.first().isEmpty() ? ProxyChoice() : proxyOfSharedSettings(url);
    }

    [[nodiscard]] QString variable(const QString& name) const {
        const QString value = environment_.value(name).trimmed();
        return value.isEmpty() ? environment_.value(name.toUpper()).trimmed() : value;
    }

    static QString kdeSettingsPath() {
        return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
               u"/kioslaverc"_s;
    }

    const QProcessEnvironment environment_;
    const ProxyExceptions exceptions_;
};

}  // namespace

std::unique_ptr<SystemProxies> makeSystemProxies(const QProcessEnvironment& environment) {
    return std::make_unique<UserProxies>(environment);
}

std::optional<ProxyChoice> scriptChoice(const QString& address) {
    const auto url =
        address.startsWith(u'/') ? Url::fromFilePath(address) : Url::parseLenient(address);
    return url && !url->scheme().isEmpty() ? std::optional(ProxyChoice{{}, *url}) : std::nullopt;
}

}  // namespace platform
