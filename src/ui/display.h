#pragma once

namespace ui {

/// Whether a window can be shown: there is an X server or a Wayland compositor that lets this user
/// in, or QT_QPA_PLATFORM names what needs neither. Before the QApplication, which would end the
/// process where there is none.
[[nodiscard]] bool hasDisplay();

}  // namespace ui
