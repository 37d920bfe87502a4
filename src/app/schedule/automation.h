#pragma once

#include <functional>

#include "app/schedule/daily_schedule.h"
#include "app/schedule/toggles.h"

namespace app {

/// What the program does at set times, and the switches that tell it what to do by itself. Main
/// thread.
class Automation {
public:
    struct Surroundings {
        engine::DownloadQueue& queue;
        AllDone& allDone;
        platform::UserDefaults& defaults;
        platform::RunLoop& loop;
        FrontEnd frontEnd;
        std::function<void(bool force)> updateStatus;
        std::function<void(engine::StatusMask)> vanish;
    };

    explicit Automation(const Surroundings& surroundings);

    [[nodiscard]] Toggles& toggles() { return toggles_; }
    [[nodiscard]] Scheduler& schedule() { return schedule_; }

private:
    Toggles toggles_;
    DailySchedule schedule_;
};

}  // namespace app
