#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QHash>
#include <QObject>
#include <optional>
#include <vector>

#include "platform/session/notifications.h"

namespace platform {

/// By way of the desktop's notification server (org.freedesktop.Notifications).
class DesktopNotifications final : public QObject, public UserNotificationCenter {
    Q_OBJECT

public:
    DesktopNotifications();
    ~DesktopNotifications() override;

    bool deliver(const UserNotification& notification) override;
    void withdrawAll() override;
    void setActivationHandler(std::function<void(const QString&)> handler) override;

private Q_SLOTS:
    void activationToken(uint number, const QString& token);
    void actionInvoked(uint number, const QString& action);
    void notificationClosed(uint number, uint reason);

private:
    /// One kind, of which at most one is on the screen.
    struct Kind {
        /// The server's number for it; 0: not shown yet.
        uint number = 0;
        bool isBeingSent = false;
        /// What came while an earlier one was on its way.
        std::optional<UserNotification> next;
    };

    /// Whether there is a server and what it can do; it is not asked before it is needed.
    enum class Server { Unknown, Asked, Known };

    void askForCapabilities();
    void sendInTurn(const UserNotification& notification);
    void send(const UserNotification& notification);
    void wasSent(const UserNotification& notification, uint number);
    [[nodiscard]] QDBusMessage notifyCall(const UserNotification& notification,
                                          uint replaced) const;
    void withdraw(uint number);
    void serverIsGone();
    [[nodiscard]] QString body(const QString& text) const;
    void logOnce(const QString& reason);

    QDBusConnection bus_;
    QDBusServiceWatcher owner_;
    std::function<void(const QString&)> activated_;
    QHash<QString, Kind> kinds_;
    /// By the server's number, also of those that stand for themselves.
    QHash<uint, UserNotification> shown_;
    /// How often all were taken away: what was on its way then is still to be.
    int withdrawals_ = 0;
    Server server_ = Server::Unknown;
    std::vector<UserNotification> waiting_;  ///< Until the server is known.
    bool readsMarkup_ = false;
    bool hasActions_ = false;
    bool hasLogged_ = false;
};

}  // namespace platform
