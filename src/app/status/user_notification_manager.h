#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>

#include "platform/session/notifications.h"

namespace platform {
class UserDefaults;
}  // namespace platform

namespace app {

/// Sends the user notifications, gathering those of one kind in one if the settings say so, or from
/// the fourth on that nobody has looked at. Main thread.
class DQUserNotificationManager {
public:
    /// Without a centre nothing is sent. `activated` is called when the user clicks any of them.
    DQUserNotificationManager(const platform::UserDefaults& defaults,
                              platform::UserNotificationCenter* center,
                              std::function<void()> activated);
    ~DQUserNotificationManager();
    DQUserNotificationManager(const DQUserNotificationManager&) = delete;
    DQUserNotificationManager& operator=(const DQUserNotificationManager&) = delete;

    /// `identifier` names the kind. An appendix comes last in a gathered notification, after an
    /// empty line, and a gathered one has no buttons. False: not sent.
    bool sendNotification(const QString& identifier, const QString& title,
                          const QString& informativeText, bool asAppendix,
                          const std::vector<platform::UserNotification::Action>& actions = {});
    /// The user has the window before him, and needs no more telling.
    void wereSeen();

private:
    [[nodiscard]] QString coalescedText(const QString& fullIdentifier, const QString& text,
                                        bool asAppendix);
    void didActivateNotification(const QString& fullIdentifier);

    const platform::UserDefaults& defaults_;
    platform::UserNotificationCenter* center_;
    std::function<void()> activated_;
    QHash<QString, int> unseen_;  ///< How many of a kind have come since the user last looked.
    QHash<QString, QStringList> coalescedNotificationInformativeTextsByIdentifier;
};

}  // namespace app
