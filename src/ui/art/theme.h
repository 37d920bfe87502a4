#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

namespace ui {

/// Colours that the program adds to the desktop's palette, all derived from it, so that light,
/// dark and high-contrast desktops stay what they are.
[[nodiscard]] bool isDark(const QPalette& palette);
/// For desktops that ask for dark windows and bring no colours for them.
[[nodiscard]] QPalette darkPalette();
[[nodiscard]] QColor separatorColor(const QPalette& palette);
/// Of texts that only tell something, on the base: paler than the others, and to be read.
[[nodiscard]] QColor noteColor(const QPalette& palette);
/// Smaller than the type around it.
[[nodiscard]] QFont noteFont(QFont around);
/// Around controls that stand on the window.
[[nodiscard]] QColor outlineColor(const QPalette& palette);

}  // namespace ui
