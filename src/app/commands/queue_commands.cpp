// The commands that act on downloads and on the queue as a whole.

#include "app/commands/bulk_commands.h"
#include "app/commands/commands.h"
#include "app/commands/core_commands.h"
#include "app/schedule/automation.h"
#include "app/settings.h"
#include "platform/base/user_defaults.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

/// A command on the downloads of the context whose status matches.
template <typename Operation>
Commands::Behaviour onContext(Commands& commands, engine::StatusMask mask, Operation operation) {
    const Commands::Surroundings around = commands.surroundings();
    return {[around, mask, operation](qint64 tag) {
                operation(around.controller.contextDownloadsMatchingStatusMask(mask), tag);
                around.frontEnd.list.setNeedsDisplay();
            },
            [around, mask](qint64) -> CommandState {
                return {around.controller.anyContextDownloadMatchesStatusMask(mask), {}, {}};
            }};
}

void provideContextCommands(Commands& commands) {
    DQMainController& controller = commands.surroundings().controller;
    Questions& questions = commands.surroundings().frontEnd.questions;
    engine::DownloadQueue& queue = controller.queue();
    const auto pause = [&queue](const Downloads& downloads, qint64) {
        pauseDownloads(queue, downloads);
    };
    commands.provide(Command::TogglePause, onContext(commands, engine::unfinishedStatuses,
                                                     [&queue](const auto& downloads, qint64) {
                                                         togglePause(queue, downloads);
                                                     }));
    commands.provide(Command::QueuePaused, onContext(commands, engine::DQDownloadStatusPaused,
                                                     [&queue](const auto& downloads, qint64) {
                                                         queuePaused(queue, downloads);
                                                     }));
    commands.provide(Command::PauseQueued,
                     onContext(commands, engine::DQDownloadStatusQueued, pause));
    commands.provide(Command::PauseAll, onContext(commands, engine::activeStatuses, pause));
    commands.provide(Command::Retry, onContext(commands, engine::DQDownloadStatusAborted,
                                               [&controller](const auto& downloads, qint64) {
                                                   controller.retry(downloads);
                                               }));
    commands.provide(
        Command::CancelAll,
        {[&controller, &questions](qint64 tag) {
             cancel(controller.queue(), controller.contextDownloads(), tag >= 1, questions);
         },
         [&controller](qint64) -> CommandState {
             return {controller.anyContextDownloadMatchesStatusMask(engine::unfinishedStatuses),
                     {},
                     {}};
         }});
}

/// On the selected rows only: on all that are shown nobody means it.
template <typename Operation>
Commands::Behaviour onSelected(DQMainController& controller, Operation operation) {
    return {[&controller, operation](qint64) { operation(controller.selectedDownloads()); },
            [&controller](qint64) -> CommandState {
                return {!controller.selectedDownloads().empty(), {}, {}};
            }};
}

void provideSelectionCommands(Commands& commands) {
    DQMainController& controller = commands.surroundings().controller;
    Questions& questions = commands.surroundings().frontEnd.questions;
    commands.provide(Command::Remove, onSelected(controller, [&](const Downloads& downloads) {
                         cancel(controller.queue(), downloads, false, questions);
                     }));
    commands.provide(Command::OpenInBrowser,
                     onSelected(controller, [&](const Downloads& downloads) {
                         openOriginalURLs(controller.rows(), downloads, questions);
                     }));
}

void provideOrderCommands(Commands& commands) {
    DQMainController& controller = commands.surroundings().controller;
    commands.provide(
        Command::Clear,
        {[&controller](qint64) { controller.clear(); },
         [&controller](qint64) -> CommandState {
             return {controller.anyDownloadMatchesStatusMask(engine::finishedStatuses), {}, {}};
         }});
    commands.provide(Command::Undo, {[&controller](qint64) { controller.undoRemoval(); },
                                     [&controller](qint64) -> CommandState {
                                         return {!controller.lastRemoval().isEmpty(), {}, {}};
                                     }});
    commands.provide(Command::Rearrange, {[&controller](qint64 tag) { controller.rearrange(tag); },
                                          [&controller](qint64 tag) -> CommandState {
                                              return {controller.canRearrange(tag), {}, {}};
                                          }});
    commands.provide(Command::Move,
                     {[&controller](qint64 tag) {
                          if (const auto row = rowForMovement(controller, tag)) {
                              controller.dropRows(controller.selectedDownloads(), *row);
                          }
                      },
                      [&controller](qint64 tag) -> CommandState {
                          return {rowForMovement(controller, tag).has_value(), {}, {}};
                      }});
}

}  // namespace

void provideQueueCommands(Commands& commands) {
    provideContextCommands(commands);
    provideSelectionCommands(commands);
    provideOrderCommands(commands);
    DQMainController& controller = commands.surroundings().controller;
    Toggles& toggles = controller.automation().toggles();
    commands.provide(Command::ToggleAutoSleep,
                     {[&toggles](qint64) { toggles.toggleAutoSleep(); },
                      [&toggles](qint64) -> CommandState {
                          return {true, toggles.mayTriggerSleepOnAllDone(), {}};
                      }});
    commands.provide(Command::ToggleAutoShutDown,
                     {[&toggles](qint64) { toggles.toggleAutoShutDown(); },
                      [&toggles](qint64) -> CommandState {
                          return {true, toggles.mayTriggerShutDownOnAllDone(), {}};
                      }});
    commands.provide(Command::StopIntake, {[&controller](qint64) { controller.stopIntake(); },
                                           [&controller](qint64) -> CommandState {
                                               return {controller.isTakingIn(), {}, {}};
                                           }});
}

}  // namespace app
