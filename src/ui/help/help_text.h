#pragma once

#include <QString>

class QMenuBar;

namespace ui {

/// In HTML and in the user's language: a short guide, and the keys of the actions in `menus`, menu
/// by menu.
[[nodiscard]] QString helpText(const QMenuBar& menus);

}  // namespace ui
