#pragma once

#include "app/commands/menu.h"
#include "app/main_controller.h"

namespace app {

/// What a click on downloads offers; with none, what the list as a whole offers.
[[nodiscard]] Menu contextMenu(const Commands& commands, const Downloads& downloads);

/// What the icon in the panel offers. Quitting and what belongs to the program as such go into a
/// submenu if the settings say so. `history` stands in it as it is given; empty: there is none.
[[nodiscard]] Menu statusItemMenu(const Commands& commands, Menu history);

/// The downloads that a click on a row is about: the selected ones if the row's is among them.
[[nodiscard]] Downloads clickedDownloads(DQMainController& controller, qsizetype row);

}  // namespace app
