#include "ui/window/task_bar_entry.h"

#include <QEvent>
#include <QWidget>
#include <array>

#include "ui/x11.h"

namespace ui {

using x11::atom;

namespace {

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
    xcb_send_event(x, 0, x11::rootWindow(x),
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
    if (xcb_connection_t* x = x11::connection(); x != nullptr && window_.isVisible()) {
        requestState(x, static_cast<xcb_window_t>(window_.winId()), !shown);
    }
}

bool TaskBarEntry::eventFilter(QObject* watched, QEvent* event) {
    // Sent before the window comes up.
    if (event->type() == QEvent::Show && !event->spontaneous() && !isShown_) {
        if (xcb_connection_t* x = x11::connection()) {
            appendState(x, static_cast<xcb_window_t>(window_.winId()));
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace ui
