#pragma once

#include <QString>
#include <QStringView>
#include <optional>
#include <vector>

#include "platform/net/http_read_stream.h"

namespace platform {

/// A proxy as the environment's variables name it: "[SCHEME://][USER[:PASSWORD]@]HOST[:PORT][/]".
/// Without a scheme it speaks HTTP; without a port it has that of its kind. Nothing: it names none
/// that can be used.
[[nodiscard]] std::optional<HTTPProxy> proxyFromAddress(const QString& text);

/// Host and port as the desktop's settings keep them. Nothing: no host, or no such port.
[[nodiscard]] std::optional<HTTPProxy> proxyAt(HTTPProxy::Kind kind, const QString& host, int port);

/// The proxies of a script's answer, "PROXY HOST:PORT; SOCKS HOST:PORT; DIRECT", in its order. What
/// cannot be understood is left out.
[[nodiscard]] std::vector<HTTPProxy> proxiesFromScriptAnswer(const QString& text);

}  // namespace platform
