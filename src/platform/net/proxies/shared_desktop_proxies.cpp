#include "platform/net/proxies/desktop_proxies.h"
#include "platform/net/proxies/proxy_exceptions.h"
#include "platform/net/proxies/proxy_text.h"
#include "platform/session/gio.h"

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto rootSchema = "org.gnome.system.proxy";

QString takeText(gchar* text) {
    const QString taken = QString::fromUtf8(text);
    g_free(text);
    return taken;
}

/// The settings of one schema.
class Settings {
public:
    Settings(const Gio& gio, GSettings* settings) : gio_(gio), settings_(settings) {}
    ~Settings() { gio_.unref(settings_); }
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    [[nodiscard]] Settings child(const char* name) const {
        return {gio_, gio_.child(settings_, name)};
    }
    [[nodiscard]] int number(const char* key) const { return gio_.integer(settings_, key); }
    [[nodiscard]] bool isOn(const char* key) const { return gio_.boolean(settings_, key) != FALSE; }
    [[nodiscard]] QString rawText(const char* key) const {
        return takeText(gio_.string(settings_, key));
    }
    [[nodiscard]] QString text(const char* key) const { return rawText(key).trimmed(); }
    [[nodiscard]] QStringList list(const char* key) const {
        gchar** const texts = gio_.strings(settings_, key);
        QStringList list;
        for (gchar** text = texts; *text != nullptr; ++text)
            list.append(QString::fromUtf8(*text));
        g_strfreev(texts);
        return list;
    }

private:
    const Gio& gio_;
    GSettings* const settings_;
};

/// Asking for a schema that is not installed would end the program.
bool isInstalled(const Gio& gio) {
    GSettingsSchemaSource* const source = gio.schemaSource();
    GSettingsSchema* const schema =
        source != nullptr ? gio.lookUpSchema(source, rootSchema, TRUE) : nullptr;
    if (schema == nullptr)
        return false;
    gio.unrefSchema(schema);
    return true;
}

/// Nothing: none is set.
std::optional<HTTPProxy> proxyOf(const Settings& root, const char* name, HTTPProxy::Kind kind) {
    const Settings settings = root.child(name);
    auto proxy = proxyAt(kind, settings.text("host"), settings.number("port"));
    const bool hasUser = proxy && qstrcmp(name, "http") == 0 && settings.isOn("use-authentication");
    if (hasUser) {
        proxy->user = settings.text("authentication-user");
        proxy->password = settings.rawText("authentication-password");
    }
    return proxy;
}

/// One for HTTP serves HTTPS as well where that has none, and one for SOCKS whatever is left.
ProxyChoice manualChoice(const Settings& root, const Url& url) {
    if (ProxyExceptions(root.list("ignore-hosts")).contain(url))
        return {};
    std::optional<HTTPProxy> proxy;
    if (url.hasScheme("https"))
        proxy = proxyOf(root, "https", HTTPProxy::Kind::Http);
    if (!proxy)
        proxy = proxyOf(root, "http", HTTPProxy::Kind::Http);
    if (!proxy)
        proxy = proxyOf(root, "socks", HTTPProxy::Kind::Socks5);
    return {proxy.value_or(HTTPProxy()), {}};
}

}  // namespace

std::optional<ProxyChoice> proxyOfSharedSettings(const Url& url) {
    const Gio* const gio = Gio::library();
    static const bool areThere = gio != nullptr && isInstalled(*gio);
    if (!areThere)
        return ProxyChoice();
    const Settings root(*gio, gio->newSettings(rootSchema));
    const QString mode = root.text("mode");
    if (mode == u"manual"_s)
        return manualChoice(root, url);
    const QString script = mode == u"auto"_s ? root.text("autoconfig-url") : QString();
    return script.isEmpty() ? ProxyChoice() : scriptChoice(script);
}

}  // namespace platform
