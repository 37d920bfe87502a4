#pragma once

#include <QList>

class QAction;
class QMenu;

namespace ui {

/// Gives each of `items` of the menu a mnemonic of its own, as far as the letters go, and leaves
/// those of the menu's other items alone. A mnemonic that another item has as well is moved.
void completeMnemonics(const QMenu& menu, const QList<QAction*>& items);

}  // namespace ui
