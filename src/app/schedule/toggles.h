#pragma once

#include <QDateTime>
#include <functional>

#include "app/front_end.h"
#include "engine/queue/download_queue.h"
#include "platform/base/user_defaults.h"

namespace app {

struct AllDone;
struct ScheduledTime;

/// What closing the main window does besides.
enum class CloseBehavior {
    Stays,
    /// Quits only while nothing is queued or running.
    QuitsOnCleanSlate,
    Quits
};

/// Switches of the program with all that turning them brings about. Front ends that show a switch
/// follow the setting or `DQMainController::statusChanged`. Main thread.
class Toggles {
public:
    struct Surroundings {
        engine::DownloadQueue& queue;
        platform::UserDefaults& defaults;
        Questions& questions;
        AllDone& allDone;
        /// With the icon redrawn at any rate if `force`.
        std::function<void(bool force)> updateStatus;
        /// Makes the downloads of these statuses vanish from the list.
        std::function<void(engine::StatusMask)> vanish;
    };

    explicit Toggles(Surroundings surroundings);

    /// The machine sleeps when all is done, this once. Ends a request to shut down.
    void toggleAutoSleep();
    /// The machine shuts down when all is done, this once, if the user confirms. Ends a request to
    /// sleep.
    void toggleAutoShutDown();
    [[nodiscard]] bool mayTriggerSleepOnAllDone() const;
    [[nodiscard]] bool mayTriggerShutDownOnAllDone() const;

    void toggleAcceleration();
    void toggleThrottle();

    void toggleScheduledQueuing();
    void toggleScheduledPausing();
    void changeScheduledTime(const ScheduledTime& time, QTime timeOfDay);

    /// Turned on, they also take at once what has finished or failed already.
    void setAutoClearSuccesses(bool clears);
    void setAutoClearLemons(bool clears);
    /// Does not quit if everything is done already.
    void setAutoQuit(bool quits);
    void setCloseBehavior(CloseBehavior behavior);
    [[nodiscard]] CloseBehavior closeBehavior() const;

private:
    void toggle(const platform::Setting<bool>& setting);
    [[nodiscard]] bool isAllDone() const;
    void setAutoClear(const platform::Setting<bool>& setting, bool clears, engine::StatusMask mask);

    Surroundings surroundings_;
};

}  // namespace app
