#pragma once

namespace app {
class Commands;
}

namespace ui {

class AddressEntry;
class MainWindow;

/// The commands that need the main window. Both outlive the commands' use.
void provideWindowCommands(app::Commands& commands, MainWindow& window, AddressEntry& entry);

}  // namespace ui
