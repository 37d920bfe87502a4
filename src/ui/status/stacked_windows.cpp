#include "ui/status/stacked_windows.h"

#include <QGuiApplication>
#include <QWidget>
#include <algorithm>
#include <chrono>

#include "ui/x11.h"

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace ui {

StackedWindows::StackedWindows(const QWidget& own) : own_(own) {
    xcb_connection_t* x = x11::connection();
    if (x == nullptr) {
        return;
    }
    stacking_ = x11::atom(x, "_NET_CLIENT_LIST_STACKING");
    active_ = x11::atom(x, "_NET_ACTIVE_WINDOW");
    // A window that comes to fill the screen is raised before it says so.
    soon_.setSingleShot(true);
    soon_.setInterval(200ms);
    connect(&soon_, &QTimer::timeout, this, &StackedWindows::changed);
    qGuiApp->installNativeEventFilter(this);
}

StackedWindows::~StackedWindows() = default;

bool StackedWindows::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type != "xcb_generic_event_t") {
        return false;
    }
    constexpr uint8_t sentByAnother = 0x80;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & ~sentByAnother) == XCB_PROPERTY_NOTIFY) {
        const xcb_atom_t atom = reinterpret_cast<const xcb_property_notify_event_t*>(event)->atom;
        if (atom == stacking_ || atom == active_) {
            soon_.start();
        }
    }
    return false;
}

QList<desktop::StackedWindow> StackedWindows::windows() const {
    QList<desktop::StackedWindow> found;
    xcb_connection_t* x = x11::connection();
    if (x == nullptr) {
        return found;
    }
    std::vector<uint32_t> ids =
        x11::listProperty(x, x11::rootWindow(x), "_NET_CLIENT_LIST_STACKING");
    std::reverse(ids.begin(), ids.end());
    const uint32_t fullScreen = x11::atom(x, "_NET_WM_STATE_FULLSCREEN");
    const qreal scale = own_.devicePixelRatioF();
    for (const uint32_t id : ids) {
        if (!x11::isViewable(x, id)) {
            continue;
        }
        const QRect frame = x11::frame(x, id);
        const std::vector<uint32_t> states = x11::listProperty(x, id, "_NET_WM_STATE");
        found.append({u"0x%1"_s.arg(id, 0, 16),
                      {(QPointF(frame.topLeft()) / scale).toPoint(),
                       (QSizeF(frame.size()) / scale).toSize()},
                      std::find(states.begin(), states.end(), fullScreen) != states.end(),
                      own_.internalWinId() == id});
    }
    return found;
}

}  // namespace ui
