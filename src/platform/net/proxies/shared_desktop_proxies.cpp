#include <gio/gio.h>

#include <memory>

#include "platform/net/proxies/desktop_proxies.h"
#include "platform/net/proxies/proxy_exceptions.h"
#include "platform/net/proxies/proxy_text.h"

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto rootSchema = "org.gnome.system.proxy";

struct Unreferencing {
    void operator()(GSettings* settings) const { g_object_unref(settings); }
};
using Settings = std::unique_ptr<GSettings, Unreferencing>;

/// Asking for a schema that is not installed would end the program.
bool isInstalled() {
    GSettingsSchemaSource* const source = g_settings_schema_source_get_default();
    GSettingsSchema* const schema =
        source != nullptr ? g_settings_schema_source_lookup(source, rootSchema, TRUE) : nullptr;
    if (schema == nullptr)
        return false;
    g_settings_schema_unref(schema);
    return true;
}

QString takeText(gchar* text) {
    const QString taken = QString::fromUtf8(text);
    g_free(text);
    return taken;
}

QString textOf(const Settings& settings, const char* key) {
    return takeText(g_settings_get_string(settings.get(), key)).trimmed();
}

QStringList listOf(const Settings& settings, const char* key) {
    gchar** const texts = g_settings_get_strv(settings.get(), key);
    QStringList list;
    for (gchar** text = texts; *text != nullptr; ++text)
        list.append(QString::fromUtf8(*text));
    g_strfreev(texts);
    return list;
}

/// Nothing: none is set.
std::optional<HTTPProxy> proxyOf(const Settings& root, const char* name, HTTPProxy::Kind kind) {
    const Settings settings(g_settings_get_child(root.get(), name));
    auto proxy =
        proxyAt(kind, textOf(settings, "host"), g_settings_get_int(settings.get(), "port"));
    const bool hasUser = proxy && qstrcmp(name, "http") == 0 &&
                         g_settings_get_boolean(settings.get(), "use-authentication");
    if (hasUser) {
        proxy->user = textOf(settings, "authentication-user");
        proxy->password =
            takeText(g_settings_get_string(settings.get(), "authentication-password"));
    }
    return proxy;
}

/// One for HTTP serves HTTPS as well where that has none, and one for SOCKS whatever is left.
ProxyChoice manualChoice(const Settings& root, const Url& url) {
    if (ProxyExceptions(listOf(root, "ignore-hosts")).contain(url))
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
    static const bool areThere = isInstalled();
    if (!areThere)
        return ProxyChoice();
    const Settings root(g_settings_new(rootSchema));
    const QString mode = textOf(root, "mode");
    if (mode == u"manual"_s)
        return manualChoice(root, url);
    const QString script = mode == u"auto"_s ? textOf(root, "autoconfig-url") : QString();
    return script.isEmpty() ? ProxyChoice() : scriptChoice(script);
}

}  // namespace platform
