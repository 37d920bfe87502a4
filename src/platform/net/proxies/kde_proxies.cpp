#include <QSettings>

#include "platform/net/proxies/desktop_proxies.h"
#include "platform/net/proxies/proxy_exceptions.h"
#include "platform/net/proxies/proxy_text.h"

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

/// What the settings of KDE call their kinds.
constexpr int manualProxies = 1, proxyScript = 2;

class KdeSettings {
public:
    explicit KdeSettings(const QString& path) : file_(path, QSettings::IniFormat) {
        file_.beginGroup(u"Proxy Settings"_s);
    }
    [[nodiscard]] int kind() const { return file_.value(u"ProxyType"_s).toInt(); }
    [[nodiscard]] bool flag(const QString& key) const { return file_.value(key).toBool(); }
    /// What was written with commas is read as a list.
    [[nodiscard]] QString text(const QString& key) const {
        return file_.value(key).toStringList().join(u',').trimmed();
    }

private:
    QSettings file_;
};

std::optional<ProxyChoice> manualChoice(const KdeSettings& settings, const Url& url) {
    const bool isExcepted = ProxyExceptions::fromText(settings.text(u"NoProxyFor"_s)).contain(url);
    if (isExcepted != settings.flag(u"ReversedException"_s))
        return ProxyChoice();
    for (const QString& name : {url.scheme().toLower() + u"Proxy"_s, u"socksProxy"_s}) {
        // The port stands behind a blank.
        const QString address = settings.text(name).simplified().replace(u' ', u':');
        if (address.isEmpty())
            continue;
        const auto proxy = proxyFromAddress(address);
        return proxy ? std::optional(ProxyChoice{*proxy, {}}) : std::nullopt;
    }
    return ProxyChoice();
}

}  // namespace

std::optional<ProxyChoice> proxyOfKdeSettings(const QString& path, const Url& url) {
    const KdeSettings settings(path);
    if (settings.kind() == manualProxies)
        return manualChoice(settings, url);
    const QString script =
        settings.kind() == proxyScript ? settings.text(u"Proxy Config Script"_s) : QString();
    return script.isEmpty() ? ProxyChoice() : scriptChoice(script);
}

}  // namespace platform
