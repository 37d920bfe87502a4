#pragma once

namespace ui {

/// Whether a window can be shown: there is an X server or a Wayland compositor that lets this user
/// in, or QT_QPA_PLATFORM names what needs neither. Before the QApplication, which would end the
/// process where there is none.
[[nodiscard]] bool hasDisplay();

/// What a Wayland session does not allow, such as placing a window, goes into the log once and to
/// nobody's screen. The processor paints all windows: keeps Qt from loading the machine's OpenGL,
/// with which Mesa brings a compiler of 40 MB, for windows of Wayland. Not where the compositor
/// draws no frames: Qt draws them with OpenGL alone. Before the QApplication; what the environment
/// says goes before.
void prepareForWayland();

}  // namespace ui
