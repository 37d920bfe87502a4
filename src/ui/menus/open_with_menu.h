#pragma once

#include <QStringList>
#include <functional>

class QMenu;

namespace ui {

/// Adds a submenu "Open with" that offers the applications which open all of these files, without
/// this program. Calls `open` with the identifier of the one chosen. Null: there is none, and
/// nothing was added.
QMenu* addOpenWithMenu(QMenu& menu, const QStringList& paths,
                       std::function<void(const QString& identifier)> open);

}  // namespace ui
