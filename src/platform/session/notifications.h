#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <vector>

namespace platform {

/// What pops up for a moment to tell the user something. Plain text; lines may be several.
struct UserNotification {
    /// One that is delivered under the identifier of an earlier one replaces it. Empty: it stands
    /// for itself.
    QString identifier;
    QString title;
    QString text;
    /// A category as desktops know them, as in "transfer.complete"; empty: none.
    QString category;
    /// A button, where the desktop has any.
    struct Action {
        QString key;  ///< Tells the buttons of one notification apart; not "default".
        QString title;
        std::function<void()> perform;
    };
    std::vector<Action> actions = {};
};

/// The desktop's notifications (on Linux those of org.freedesktop.Notifications). Main thread.
class UserNotificationCenter {
public:
    virtual ~UserNotificationCenter() = default;

    /// False: this desktop shows none. What cannot be shown later is lost silently.
    virtual bool deliver(const UserNotification& notification) = 0;
    /// Takes away all that are on the screen.
    virtual void withdrawAll() = 0;
    /// Called with the identifier of a notification that the user has clicked. Empty: nobody is.
    virtual void setActivationHandler(std::function<void(const QString& identifier)> handler) = 0;
};

/// Runs in Qt's event loop of the thread that makes it. `clickTitle`: what a click does, where the
/// desktop offers it by name.
[[nodiscard]] std::unique_ptr<UserNotificationCenter> makeUserNotificationCenter(
    const QString& clickTitle);

}  // namespace platform
