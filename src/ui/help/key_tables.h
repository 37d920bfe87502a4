#pragma once

#include <QString>

class QMenuBar;

namespace ui {

/// The keys of the list and of the actions in `menus`, menu by menu, in HTML.
[[nodiscard]] QString keyTables(const QMenuBar& menus);

}  // namespace ui
