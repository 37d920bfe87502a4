#pragma once

#include "app/commands/menu.h"

namespace app {

/// What the status item's menu offers above the history: the windows, and in the place of the
/// settings the log for those who hold keys down.
[[nodiscard]] MenuItem statusItemWindowItem(const Commands& commands);
[[nodiscard]] MenuItem statusItemSettingsItem(const Commands& commands);
[[nodiscard]] MenuItem statusItemLogItem(const Commands& commands);
/// What it offers below: from About to Quit, in a submenu if the settings say so.
[[nodiscard]] Menu statusItemProgramItems(const Commands& commands);

}  // namespace app
