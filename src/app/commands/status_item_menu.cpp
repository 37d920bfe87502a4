#include "app/commands/status_item_menu.h"

#include "app/commands/commands.h"
#include "app/settings.h"
#include "platform/base/user_defaults.h"

namespace app {

MenuItem statusItemWindowItem(const Commands& commands) {
    return commandItem(commands, Command::ShowDownloadWindow);
}

MenuItem statusItemSettingsItem(const Commands& commands) {
    return commandItem(commands, Command::ShowPreferences);
}

MenuItem statusItemLogItem(const Commands& commands) {
    return commandItem(commands, Command::ToggleDebugLogging);
}

Menu statusItemProgramItems(const Commands& commands) {
    Menu items;
    for (const Command command :
         {Command::ShowAbout, Command::CheckForUpdates, Command::ShowHelp}) {
        items.push_back(commandItem(commands, command));
    }
    items.push_back(separator());
    items.push_back(commandItem(commands, Command::Quit));
    if (!commands.surroundings().defaults.get(settings::useStatusItemMetaSubmenu)) {
        return items;
    }
    return {submenu(QStringLiteral("Orlop"), std::move(items))};
}

}  // namespace app
