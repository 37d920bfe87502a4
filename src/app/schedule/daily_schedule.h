#pragma once

#include "app/controller_roles.h"
#include "app/front_end.h"
#include "engine/queue/download_queue.h"
#include "platform/base/timer.h"
#include "platform/base/user_defaults.h"

namespace app {

struct ScheduledTime;

/// Queues everything at one time of the day and pauses at another, as the settings say.
///
/// Its only state is the pending calls, of which there is at most one for each of the two. A time
/// that passes while the machine sleeps, or that the clock is set past, is left out until the next
/// day. Follows its settings from the first `resetSchedule` on. Main thread.
class DailySchedule final : public Scheduler {
public:
    struct Surroundings {
        engine::DownloadQueue& queue;
        DownloadListView& list;
        platform::UserDefaults& defaults;
        platform::RunLoop& loop;
    };

    explicit DailySchedule(const Surroundings& surroundings);
    DailySchedule(const DailySchedule&) = delete;
    DailySchedule& operator=(const DailySchedule&) = delete;

    void resetSchedule() override;
    void disableSchedule() override;

private:
    void cancelPendingCalls();
    [[nodiscard]] platform::Seconds secondsUntil(const ScheduledTime& time) const;
    void scheduledQueueAll();
    void scheduledPauseAll();

    Surroundings surroundings_;
    platform::Timer queueing_, pausing_;
    bool isEnabled_ = false;
    platform::Observation observation_;
};

}  // namespace app
