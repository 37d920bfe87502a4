// The commands that change how the list shows downloads.

#include "app/commands/commands.h"
#include "app/commands/core_commands.h"
#include "app/main_controller.h"
#include "app/settings.h"
#include "engine/settings.h"
#include "platform/base/user_defaults.h"

namespace app {
namespace {

CommandState sortingState(const platform::UserDefaults& defaults, qint64 tag) {
    const bool isMarked = tag < 0 ? (tag == -2) == defaults.get(settings::invertSorting)
                                  : defaults.get(settings::sortingCriterion) == tag;
    return {true, isMarked, {}};
}

void provideNameCommands(Commands& commands) {
    DQMainController& controller = commands.surroundings().controller;
    platform::UserDefaults& defaults = commands.surroundings().defaults;
    commands.provide(Command::TogglePrivateDownloading,
                     {[&controller, &defaults](qint64) {
                          defaults.set(engine::settings::privateDownloading,
                                       !defaults.get(engine::settings::privateDownloading));
                          controller.updateDownloadListDisplay();
                      },
                      [&defaults](qint64) -> CommandState {
                          return {true, defaults.get(engine::settings::privateDownloading), {}};
                      }});
    commands.provide(
        Command::ToggleLocationKeyDisplayNames,
        {[&controller, &defaults](qint64) {
             defaults.set(engine::settings::displayLocationsAsNames,
                          !defaults.get(engine::settings::displayLocationsAsNames));
             controller.updateDownloadListDisplay();
         },
         [&defaults](qint64) -> CommandState {
             const bool isOpen = !defaults.get(engine::settings::privateDownloading);
             return {isOpen, isOpen && defaults.get(engine::settings::displayLocationsAsNames), {}};
         }});
}

}  // namespace

void provideListCommands(Commands& commands) {
    DQMainController& controller = commands.surroundings().controller;
    platform::UserDefaults& defaults = commands.surroundings().defaults;
    DownloadListView& list = commands.surroundings().frontEnd.list;
    commands.provide(Command::ChangeSorting,
                     {[&controller](qint64 tag) { controller.changeSorting(tag); },
                      [&defaults](qint64 tag) { return sortingState(defaults, tag); }});
    commands.provide(Command::ChangeProgressBarStyle,
                     {[&defaults, &list](qint64 tag) {
                          defaults.set(settings::progressBarStyle, tag);
                          list.setNeedsDisplay();
                      },
                      [&defaults](qint64 tag) -> CommandState {
                          return {true, defaults.get(settings::progressBarStyle) == tag, {}};
                      }});
    provideNameCommands(commands);
}

}  // namespace app
