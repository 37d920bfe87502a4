#pragma once

#include <QString>

#include "app/status/queue_status.h"
#include "platform/session/notifications.h"

namespace engine {
class DQDownload;
}

/// Parts of the core that the controller reaches by what they do. Each class as it stands does
/// nothing, which is what a program without that part wants. Main thread.
namespace app {

/// What the next moment when everything is done may set off.
struct AllDone {
    bool _mayTriggerAllDoneNotification = false;
    bool _mayTriggerQuitOnAllDone = false;
    /// The user's one-off requests, of which at most one is made; never saved.
    bool _mayTriggerSleepOnAllDone = false;
    bool _mayTriggerShutDownOnAllDone = false;
};

/// Tells the user how the queue as a whole stands.
class StatusReporter {
public:
    virtual ~StatusReporter() = default;

    /// Called at every change of any download, so it must cost little.
    virtual void updateStatusAndForceUpdateApplicationImage(bool force) {
        static_cast<void>(force);
    }
    /// As of the last update.
    [[nodiscard]] virtual QueueStatus status() const { return {}; }
    /// A download has finished or failed.
    virtual void playFeedback() {}
    /// False: not sent.
    virtual bool sendUserNotification(const QString& identifier, const QString& title,
                                      const QString& informativeText, bool asAppendix) {
        static_cast<void>(identifier), static_cast<void>(title);
        static_cast<void>(informativeText), static_cast<void>(asAppendix);
        return false;
    }
    /// The same of one download, with buttons for what can be done with it.
    virtual bool sendUserNotificationWithActions(
        const QString& identifier, const QString& title, const QString& informativeText,
        const std::vector<platform::UserNotification::Action>& actions) {
        static_cast<void>(actions);
        return sendUserNotification(identifier, title, informativeText, false);
    }
    /// The window has come before the user.
    virtual void windowWasSeen() {}
};

/// Remembers downloads that the queue has forgotten.
class HistoryKeeper {
public:
    virtual ~HistoryKeeper() = default;

    /// A download was finished or aborted.
    virtual void add(engine::DQDownload& download) { static_cast<void>(download); }
    /// The file of one that was finished has been looked at.
    virtual void noteVerification(engine::DQDownload& download) { static_cast<void>(download); }
    /// The program ends.
    virtual void cleanUp() {}
};

/// Queues and pauses at set times of the day.
class Scheduler {
public:
    virtual ~Scheduler() = default;

    /// Works the times out anew, from now.
    virtual void resetSchedule() {}
    virtual void disableSchedule() {}
};

}  // namespace app
