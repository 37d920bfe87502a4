#pragma once

#include <QObject>
#include <optional>

#include "app/controller_roles.h"
#include "app/front_end.h"
#include "app/status/application_image.h"
#include "app/status/user_notification_manager.h"
#include "platform/base/timer.h"

namespace platform {
class UserDefaults;
}

namespace app {

class DQMainController;

/// Says how far along everything is: in the status line, on the icon, by sound and notification;
/// and when nothing is left, sets off what the user wants to happen then. Main thread.
class QueueStatusReporter final : public QObject, public StatusReporter {
    Q_OBJECT

public:
    /// All of it outlives the reporter.
    struct Surroundings {
        DQMainController& controller;
        const platform::UserDefaults& defaults;
        platform::RunLoop& loop;
        FrontEnd frontEnd;
    };

    explicit QueueStatusReporter(const Surroundings& surroundings);

    void updateStatusAndForceUpdateApplicationImage(bool force) override;
    [[nodiscard]] QueueStatus status() const override;
    void playFeedback() override;
    void windowWasSeen() override { notifications_.wereSeen(); }
    bool sendUserNotification(const QString& identifier, const QString& title,
                              const QString& informativeText, bool asAppendix) override;
    bool sendUserNotificationWithActions(
        const QString& identifier, const QString& title, const QString& informativeText,
        const std::vector<platform::UserNotification::Action>& actions) override;

Q_SIGNALS:
    /// The icon is to be drawn anew; at most about twice a second while nothing but progress
    /// changes.
    void applicationImageChanged(const app::ApplicationImage& image);

private:
    /// Whether the user wants to be told, and does not see it anyway.
    [[nodiscard]] bool mayNotify() const;
    /// How far all that is active has come, of which the running ones this far in sum; negative:
    /// nothing is active.
    [[nodiscard]] double fraction(double sumOfFractions) const;
    void updateApplicationImage(bool force);
    void reflectAllDone();
    void actOnAllDone();
    void sendDoneUserNotification(bool failuresRemain);

    Surroundings surroundings_;
    DQUserNotificationManager notifications_;
    ApplicationImageGate imageGate_;
    /// Put together when somebody asks for it; most changes come in faster than anybody looks.
    mutable std::optional<QueueStatus> status_;
    platform::Timer quitting_;
    /// What follows from the end of the last download and is not taken back.
    platform::Timers consequences_;
};

}  // namespace app
