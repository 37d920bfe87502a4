#include "app/commands/commands.h"

#include "app/commands/core_commands.h"

namespace app {

Commands::Commands(const Surroundings& surroundings) : surroundings_(surroundings) {
    provideQueueCommands(*this);
    provideListCommands(*this);
    provideProgramCommands(*this);
}

void Commands::provide(Command command, Behaviour behaviour) {
    behaviours_.insert_or_assign(command, std::move(behaviour));
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
