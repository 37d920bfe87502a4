#pragma once

#include <QVariantMap>
#include <functional>
#include <map>

#include "app/commands/command.h"
#include "app/front_end.h"
#include "engine/lifecycle/download.h"

namespace platform {
class UserDefaults;
}

namespace app {

class DQMainController;

/// What commands do and when they can be given. The core's own are provided from the start; those
/// that need a window are provided by whoever has it, and are not offered until then. Main thread.
class Commands {
public:
    /// All of it outlives the commands.
    struct Surroundings {
        DQMainController& controller;
        platform::UserDefaults& defaults;
        FrontEnd frontEnd;
    };
    struct Behaviour {
        std::function<void(qint64 tag)> perform;
        /// Null: always enabled, without a mark.
        std::function<CommandState(qint64 tag)> state;
    };

    /// About one download.
    struct RowBehaviour {
        std::function<bool(const engine::DQDownload&)> isPossible;
        std::function<void(const engine::DownloadPtr&)> perform;
    };

    explicit Commands(const Surroundings& surroundings);

    void provide(Command command, Behaviour behaviour);
    /// For the row that a menu is about, and else for the one that is selected alone.
    void provideForRow(Command command, const RowBehaviour& behaviour);
    /// Null: it is not offered for single rows.
    [[nodiscard]] const RowBehaviour* rowBehaviour(Command command) const;
    [[nodiscard]] bool isOffered(Command command) const;
    [[nodiscard]] CommandState state(Command command, qint64 tag = 0) const;
    /// Beeps if it is not enabled.
    void perform(Command command, qint64 tag = 0) const;

    /// Edits a rule; an empty one is a new rule. Null, as at first: rules cannot be edited.
    std::function<void(const QVariantMap& rule)> editRule;

    [[nodiscard]] const Surroundings& surroundings() const { return surroundings_; }

private:
    Surroundings surroundings_;
    std::map<Command, Behaviour> behaviours_;
    std::map<Command, RowBehaviour> rowBehaviours_;
};

}  // namespace app
