#pragma once

#include "app/commands/menu.h"

class QAction;
class QMenu;

namespace ui {

/// Adds the items before `before`, or at the end for null. Answers the actions made for them, which
/// belong to the menu.
QList<QAction*> addMenuItems(QMenu& menu, const app::Menu& items, QAction* before = nullptr);

}  // namespace ui
