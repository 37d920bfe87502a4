#include "ui/x11.h"

#include <QGuiApplication>
#include <cstdlib>
#include <cstring>

namespace ui::x11 {
namespace {

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
Owned<Reply> owned(Reply* reply) {
    return {reply, &std::free};
}

}  // namespace

xcb_connection_t* connection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

xcb_window_t rootWindow(xcb_connection_t* x) {
    return xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
}

xcb_atom_t atom(xcb_connection_t* x, const char* name) {
    const auto length = static_cast<uint16_t>(std::strlen(name));
    const auto reply =
        owned(xcb_intern_atom_reply(x, xcb_intern_atom(x, 0, length, name), nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::vector<uint32_t> listProperty(xcb_connection_t* x, xcb_window_t window, const char* property) {
    constexpr uint32_t mostItems = 4096;
    const auto reply = owned(xcb_get_property_reply(
        x, xcb_get_property(x, 0, window, atom(x, property), XCB_ATOM_ANY, 0, mostItems), nullptr));
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* items = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
    return {items, items + reply->value_len};
}

bool isViewable(xcb_connection_t* x, xcb_window_t window) {
    const auto reply =
        owned(xcb_get_window_attributes_reply(x, xcb_get_window_attributes(x, window), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

QRect frame(xcb_connection_t* x, xcb_window_t window) {
    const auto size = owned(xcb_get_geometry_reply(x, xcb_get_geometry(x, window), nullptr));
    const auto place = owned(xcb_translate_coordinates_reply(
        x, xcb_translate_coordinates(x, window, rootWindow(x), 0, 0), nullptr));
    return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
}

bool hasSystemTray() {
    xcb_connection_t* x = connection();
    if (x == nullptr) {
        return false;
    }
    const auto reply = owned(xcb_get_selection_owner_reply(
        x, xcb_get_selection_owner(x, atom(x, "_NET_SYSTEM_TRAY_S0")), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

}  // namespace ui::x11
