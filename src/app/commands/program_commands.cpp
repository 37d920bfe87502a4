// Clipboard, schedule, speed, log and the end of the program.

#include "app/commands/bulk_commands.h"
#include "app/commands/commands.h"
#include "app/commands/core_commands.h"
#include "app/schedule/automation.h"
#include "app/settings.h"
#include "engine/acceleration/acceleration_settings.h"
#include "engine/workers/throttle.h"
#include "platform/base/user_defaults.h"

namespace app {
namespace {

using engine::AccelerationSettings;

/// Turns a setting the other way round and shows it as a mark.
Commands::Behaviour toggleOf(platform::UserDefaults& defaults,
                             const platform::Setting<bool>& setting) {
    return {[&defaults, &setting](qint64) { defaults.set(setting, !defaults.get(setting)); },
            [&defaults, &setting](qint64) -> CommandState {
                return {true, defaults.get(setting), {}};
            }};
}

/// A switch that more than one place turns.
Commands::Behaviour toggleOf(Toggles& toggles, void (Toggles::*turn)(),
                             const platform::UserDefaults& defaults,
                             const platform::Setting<bool>& setting) {
    return {[&toggles, turn](qint64) { (toggles.*turn)(); },
            [&defaults, &setting](qint64) -> CommandState {
                return {true, defaults.get(setting), {}};
            }};
}

void provideScheduleCommands(Commands& commands) {
    Toggles& toggles = commands.surroundings().controller.automation().toggles();
    const platform::UserDefaults& defaults = commands.surroundings().defaults;
    commands.provide(
        Command::ToggleScheduledQueuing,
        toggleOf(toggles, &Toggles::toggleScheduledQueuing, defaults, settings::scheduleQueue));
    commands.provide(
        Command::ToggleScheduledPausing,
        toggleOf(toggles, &Toggles::toggleScheduledPausing, defaults, settings::schedulePause));
}

void provideSpeedCommands(Commands& commands) {
    const engine::Throttle& throttle = commands.surroundings().controller.queue().throttle();
    platform::UserDefaults& defaults = commands.surroundings().defaults;
    Toggles& toggles = commands.surroundings().controller.automation().toggles();
    commands.provide(
        Command::ToggleAcceleration,
        {[&toggles](qint64) { toggles.toggleAcceleration(); },
         [&throttle, &defaults](qint64) -> CommandState {
             return {throttle.isAvailable(), AccelerationSettings(defaults).accelerates(), {}};
         }});
    commands.provide(Command::ToggleThrottle,
                     {[&toggles](qint64) { toggles.toggleThrottle(); },
                      [&throttle](qint64) -> CommandState {
                          return {throttle.isAvailable(), throttle.isThrottled(), {}};
                      }});
}

}  // namespace

void provideProgramCommands(Commands& commands) {
    const Commands::Surroundings around = commands.surroundings();
    DQMainController& controller = around.controller;
    commands.provide(
        Command::Copy,
        {[around](qint64) {
             copyOriginalURLs(around.controller.contextDownloads(), around.frontEnd);
         },
         [&controller](qint64) -> CommandState {
             return {controller.anyContextDownloadMatchesStatusMask(engine::anyStatus), {}, {}};
         }});
    for (const auto& [command, setting] :
         {std::pair(Command::ToggleAutoStart, &settings::autoStart),
          std::pair(Command::ToggleDebugLogging, &settings::debugLog)}) {
        commands.provide(command, toggleOf(around.defaults, *setting));
    }
    provideScheduleCommands(commands);
    provideSpeedCommands(commands);
    commands.provide(Command::ShowDownloadWindow,
                     {[around](qint64) { around.frontEnd.presence.showDownloadWindow(true); }, {}});
    commands.provide(Command::Quit, {[&controller](qint64) { controller.terminate(); }, {}});
}

}  // namespace app
