#pragma once

#include "app/commands/menu.h"
#include "app/history/history_actions.h"
#include "app/history/history_entry.h"

namespace app {

/// What can be done with one entry: with its file, if there still is one, and with its address.
/// Touches the disk.
[[nodiscard]] Menu historyItemMenu(const HistoryEntry& entry, const HistoryActions& actions);

}  // namespace app
