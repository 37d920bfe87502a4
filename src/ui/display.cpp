#include "ui/display.h"

#include <xcb/xcb.h>

#include <QDir>
#include <QLibraryInfo>

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

/// Qt complains that it does not find what it was kept from.
void leaveOutBuffers(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    const bool isOfWayland = QByteArrayView(context.category) == "qt.qpa.wayland";
    if (!isOfWayland || !text.contains(QLatin1String("client buffer integration"))) {
        otherMessages(type, context, text);
    }
}

}  // namespace

void doWithoutOpenGL() {
    const auto offered =
        qEnvironmentVariableIsSet(bufferVariable) ? std::nullopt : wayland::interfaces();
    if (!offered || !offered->contains("zxdg_decoration_manager_v1")) {
        return;
    }
    qputenv(bufferVariable, "none");
    otherMessages = qInstallMessageHandler(leaveOutBuffers);
}

bool hasDisplay() {
    const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
    const bool mayUseX = chosen.isEmpty() || chosen.contains("xcb");
    const bool mayUseWayland = chosen.isEmpty() || chosen.contains("wayland");
    return (!mayUseX && !mayUseWayland) || (mayUseX && hasXServer()) ||
           (mayUseWayland && hasWaylandCompositor());
}

}  // namespace ui
