#include "ui/display.h"

#include <xcb/xcb.h>

#include <QDir>
#include <QLibraryInfo>
#include <QSet>
#include <mutex>

#include "platform/base/log.h"
#include "ui/wayland.h"

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
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) +
                       QStringLiteral("/platforms"));
    return !plugins.entryList({QStringLiteral("libqwayland-*")}).isEmpty() &&
           wayland::interfaces().has_value();
}

constexpr const char* bufferVariable = "QT_WAYLAND_CLIENT_BUFFER_INTEGRATION";

QtMessageHandler otherMessages = nullptr;

std::mutex refusalsLock;  ///< Guards `refusals`.
QSet<QString> refusals;   ///< What was told already.

/// What windows are denied goes into the log once, not to standard error each time. Qt also
/// complains that it does not find the OpenGL that it was kept from. Any thread.
void tellRefusalsOnce(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (text.startsWith(u"This plugin does not support ")) {
        const std::lock_guard guard(refusalsLock);
        if (!refusals.contains(text)) {
            refusals.insert(text);
            platform::log(QStringLiteral("the desktop's windows: ") + text);
        }
    } else if (QByteArrayView(context.category) != "qt.qpa.wayland" ||
               !text.contains(u"client buffer integration")) {
        otherMessages(type, context, text);
    }
}

}  // namespace

void prepareForWayland() {
    otherMessages = qInstallMessageHandler(tellRefusalsOnce);
    const auto offered =
        qEnvironmentVariableIsSet(bufferVariable) ? std::nullopt : wayland::interfaces();
    if (!offered || !offered->contains("zxdg_decoration_manager_v1")) {
        return;
    }
    qputenv(bufferVariable, "none");
}

bool hasDisplay() {
    const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
    const bool mayUseX = chosen.isEmpty() || chosen.contains("xcb");
    const bool mayUseWayland = chosen.isEmpty() || chosen.contains("wayland");
    return (!mayUseX && !mayUseWayland) || (mayUseX && hasXServer()) ||
           (mayUseWayland && hasWaylandCompositor());
}

}  // namespace ui
