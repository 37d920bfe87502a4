#pragma once

#include <QStringList>
#include <functional>

#include "app/commands/menu.h"

namespace app {

/// Adds a submenu "Open with" of the applications that open all of these files, without this
/// program; nothing if there are none. `open` gets the identifier of the one chosen.
void appendOpenWith(Menu& menu, const QStringList& paths,
                    const std::function<void(const QString& identifier)>& open);

}  // namespace app
