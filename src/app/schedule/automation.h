#pragma once

#include <functional>

#include "app/schedule/bulk_commands.h"
#include "app/schedule/daily_schedule.h"
#include "app/schedule/toggles.h"

namespace app {

/// What the program does at set times, to many downloads at once, and when all is done. Main
/// thread.
class Automation {
public:
    struct Surroundings {
        const DownloadQueue& queue;
        ListPresenter& list;
        AllDone& allDone;
        platform::UserDefaults& defaults;
        platform::RunLoop& loop;
        FrontEnd frontEnd;
        std::function<void(bool force)> updateStatus;
        std::function<void(engine::StatusMask)> vanish;
    };

    explicit Automation(const Surroundings& surroundings);

    [[nodiscard]] BulkCommands& commands() { return commands_; }
    [[nodiscard]] Toggles& toggles() { return toggles_; }
    [[nodiscard]] Scheduler& schedule() { return schedule_; }

private:
    BulkCommands commands_;
    Toggles toggles_;
    DailySchedule schedule_;
};

}  // namespace app
