#include "ui/window/task_bar_entry.h"

#include <xcb/xcb.h>

#include <QEvent>
#include <QGuiApplication>
#include <QWidget>
#include <array>
#include <cstdlib>
#include <cstring>

namespace ui {
namespace {

/// Null where windows are not X11's.
xcb_connection_t* connection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

xcb_atom_t atom(xcb_connection_t* x, const char* name) {
    const auto length = static_cast<uint16_t>(std::strlen(name));
    xcb_intern_atom_reply_t* reply =
        xcb_intern_atom_reply(x, xcb_intern_atom(x, 0, length, name), nullptr);
    const xcb_atom_t answer = reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
    std::free(reply);
    return answer;
}

/// The window manager reads the property when the window comes up.
void appendState(xcb_connection_t* x, xcb_window_t window) {
    const std::array atoms{atom(x, "_NET_WM_STATE_SKIP_TASKBAR"),
                           atom(x, "_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(x, XCB_PROP_MODE_APPEND, window, atom(x, "_NET_WM_STATE"), XCB_ATOM_ATOM,
                        32, atoms.size(), atoms.data());
}

/// Once a window is up, its state belongs to the window manager, which has to be asked.
void requestState(xcb_connection_t* x, xcb_window_t window, bool skips) {
    constexpr uint32_t fromApplication = 1;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(x, "_NET_WM_STATE");
    message.data.data32[0] = skips ? 1 : 0;
    message.data.data32[1] = atom(x, "_NET_WM_STATE_SKIP_TASKBAR");
    message.data.data32[2] = atom(x, "_NET_WM_STATE_SKIP_PAGER");
    message.data.data32[3] = fromApplication;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    xcb_send_event(x, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(x);
}

}  // namespace

TaskBarEntry::TaskBarEntry(QWidget& window) : window_(window) {
    window.installEventFilter(this);
}

void TaskBarEntry::setShown(bool shown) {
    if (isShown_ == shown) {
        return;
    }
    isShown_ = shown;
    if (xcb_connection_t* x = connection(); x != nullptr && window_.isVisible()) {
        requestState(x, static_cast<xcb_window_t>(window_.winId()), !shown);
    }
}

bool TaskBarEntry::eventFilter(QObject* watched, QEvent* event) {
    // Sent before the window comes up.
    if (event->type() == QEvent::Show && !event->spontaneous() && !isShown_) {
        if (xcb_connection_t* x = connection()) {
            appendState(x, static_cast<xcb_window_t>(window_.winId()));
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace ui
