#pragma once

#include <QProcessEnvironment>
#include <memory>
#include <optional>
#include <vector>

#include "platform/net/http_read_stream.h"
#include "platform/net/url.h"

namespace platform {

/// One way to a server: through a proxy (of kind None: directly), or, where `script` is not empty,
/// through the one that the automatic configuration script there names.
struct ProxyChoice {
    HTTPProxy proxy;
    Url script;
};

/// What the user has set for all programs. Any thread.
class SystemProxies {
public:
    virtual ~SystemProxies() = default;
    /// In order of preference, at least one. Nothing: there is a setting that cannot be understood,
    /// and going past it might show what it is meant to hide.
    [[nodiscard]] virtual std::optional<std::vector<ProxyChoice>> proxiesForURL(
        const Url& url) const = 0;
};

/// The variables of the environment and, where they say nothing of a URL and name a desktop that
/// runs ("XDG_CURRENT_DESKTOP"), its settings as they are when asked. In this order: "no_proxy"
/// names hosts that are reached directly; the variable of the URL's scheme, such as "http_proxy";
/// "all_proxy"; "auto_proxy", which is the address of a script; the desktop. In small letters or,
/// where that is absent, in capitals; an empty one says nothing.
[[nodiscard]] std::unique_ptr<SystemProxies> makeSystemProxies(
    const QProcessEnvironment& environment);

}  // namespace platform
