#include "app/commands/commands.h"

#include "app/commands/core_commands.h"
#include "app/main_controller.h"

namespace app {

Commands::Commands(const Surroundings& surroundings) : surroundings_(surroundings) {
    provideQueueCommands(*this);
    provideListCommands(*this);
    provideProgramCommands(*this);
}

void Commands::provide(Command command, Behaviour behaviour) {
    behaviours_.insert_or_assign(command, std::move(behaviour));
}

void Commands::provideForRow(Command command, const RowBehaviour& behaviour) {
    DQMainController& controller = surroundings_.controller;
    const auto single = [&controller]() -> engine::DownloadPtr {
        const Downloads selected = controller.selectedDownloads();
        return selected.size() == 1 ? selected.front() : nullptr;
    };
    rowBehaviours_[command] = behaviour;
    provide(command, {[single, behaviour](qint64) {
                          if (const auto download = single()) {
                              behaviour.perform(download);
                          }
                      },
                      [single, behaviour](qint64) -> CommandState {
                          const auto download = single();
                          return {download && behaviour.isPossible(*download), {}, {}};
                      }});
}

const Commands::RowBehaviour* Commands::rowBehaviour(Command command) const {
    const auto found = rowBehaviours_.find(command);
    return found == rowBehaviours_.end() ? nullptr : &found->second;
}

bool Commands::isOffered(Command command) const {
    return behaviours_.contains(command);
}

CommandState Commands::state(Command command, qint64 tag) const {
    const auto found = behaviours_.find(command);
    if (found == behaviours_.end()) {
        return {false, {}, {}};
    }
    return found->second.state ? found->second.state(tag) : CommandState();
}

void Commands::perform(Command command, qint64 tag) const {
    if (state(command, tag).isEnabled) {
        behaviours_.at(command).perform(tag);
    } else {
        surroundings_.frontEnd.feedback.beep();
    }
}

}  // namespace app
