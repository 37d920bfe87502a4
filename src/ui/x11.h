#pragma once

#include <xcb/xcb.h>

#include <QRect>
#include <memory>
#include <vector>

/// What only X11 knows of windows (EWMH, the window manager's hints). Coordinates are pixels of
/// the screen.
namespace ui::x11 {

/// Null where windows are not X11's.
[[nodiscard]] xcb_connection_t* connection();
[[nodiscard]] xcb_window_t rootWindow(xcb_connection_t* x);
[[nodiscard]] xcb_atom_t atom(xcb_connection_t* x, const char* name);

/// A property that is a list of atoms, windows or numbers; at most 4096 of them. Empty: none.
[[nodiscard]] std::vector<uint32_t> listProperty(xcb_connection_t* x, xcb_window_t window,
                                                 const char* property);
/// Whether a window is mapped, it and all around it.
[[nodiscard]] bool isViewable(xcb_connection_t* x, xcb_window_t window);
/// On the screen, without its frame. Null: the window has gone.
[[nodiscard]] QRect frame(xcb_connection_t* x, xcb_window_t window);
/// Whether somebody docks icons by the System Tray Protocol (freedesktop.org).
[[nodiscard]] bool hasSystemTray();

}  // namespace ui::x11
