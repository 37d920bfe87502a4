#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "platform/net/proxies/system_proxies.h"

namespace platform {

/// The settings that most desktops share, under "org.gnome.system.proxy". Nothing: as of
/// SystemProxies. Direct where the desktop has no such settings.
[[nodiscard]] std::optional<ProxyChoice> proxyOfSharedSettings(const Url& url);

/// KDE's, from its file. Direct where there is no such file.
[[nodiscard]] std::optional<ProxyChoice> proxyOfKdeSettings(const QString& path, const Url& url);

/// A script at an address as a user writes it: also a path. Nothing: it is no address.
[[nodiscard]] std::optional<ProxyChoice> scriptChoice(const QString& address);

}  // namespace platform
