#pragma once

#include "app/commands/menu.h"

namespace app {

/// The choice of the general downloads folder, with the rules below it.
[[nodiscard]] Menu downloadsFolderItems(const Commands& commands, bool menuIsEmpty);

}  // namespace app
