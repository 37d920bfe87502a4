#include "ui/display.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <QDir>
#include <QLibraryInfo>
#include <cstring>

namespace ui {
namespace {

bool hasXServer() {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool isGood = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return isGood;
}

/// A compositor is of use only with the plug-in that speaks to it.
bool hasWaylandCompositor() {
    const QByteArray name = qgetenv("WAYLAND_DISPLAY");
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) +
                       QStringLiteral("/platforms"));
    if (name.isEmpty() || plugins.entryList({QStringLiteral("libqwayland-*")}).isEmpty()) {
        return false;
    }
    const QByteArray path = name.startsWith('/') ? name : qgetenv("XDG_RUNTIME_DIR") + '/' + name;
    sockaddr_un address{};
    if (path.size() >= static_cast<qsizetype>(sizeof address.sun_path)) {
        return false;
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool isGood =
        socket >= 0 &&
        ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    if (socket >= 0) {
        ::close(socket);
    }
    return isGood;
}

}  // namespace

bool hasDisplay() {
    const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
    const bool mayUseX = chosen.isEmpty() || chosen.contains("xcb");
    const bool mayUseWayland = chosen.isEmpty() || chosen.contains("wayland");
    return (!mayUseX && !mayUseWayland) || (mayUseX && hasXServer()) ||
           (mayUseWayland && hasWaylandCompositor());
}

}  // namespace ui
