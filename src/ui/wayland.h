#pragma once

#include <QByteArrayList>
#include <optional>

/// What only Wayland knows, found out before Qt connects to it.
namespace ui::wayland {

/// The interfaces that the session's compositor offers (wl_registry of the Wayland protocol).
/// Nothing: there is no compositor, it does not let this user in, or it does not answer within a
/// second.
[[nodiscard]] std::optional<QByteArrayList> interfaces();

}  // namespace ui::wayland
