#include "platform/session/desktop_notifications.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include "platform/base/log.h"

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto service = u"org.freedesktop.Notifications"_s;
const auto path = u"/org/freedesktop/Notifications"_s;
const auto interface = service;
const auto defaultAction = u"default"_s;
constexpr int timeout = 10'000;
constexpr qsizetype longestText = 2000;

QDBusMessage serverCall(const QString& method) {
    return QDBusMessage::createMethodCall(service, path, interface, method);
}

/// Names come from servers and may hold anything: the bus takes no NUL, and nobody reads a book in
/// a notification.
QString bounded(QString text) {
    text.replace(QChar(u'\0'), QChar(QChar::ReplacementCharacter));
    if (text.size() > longestText) {
        text.truncate(longestText - (text.at(longestText - 1).isHighSurrogate() ? 1 : 0));
        text += QChar(u'\u2026');
    }
    return text;
}

}  // namespace

DesktopNotifications::DesktopNotifications()
    : bus_(QDBusConnection::sessionBus()),
      owner_(service, bus_, QDBusServiceWatcher::WatchForUnregistration) {
    connect(&owner_, &QDBusServiceWatcher::serviceUnregistered, this,
            &DesktopNotifications::serverIsGone);
    bus_.connect(service, path, interface, u"ActivationToken"_s, this,
                 SLOT(activationToken(uint, QString)));
    bus_.connect(service, path, interface, u"ActionInvoked"_s, this,
                 SLOT(actionInvoked(uint, QString)));
    bus_.connect(service, path, interface, u"NotificationClosed"_s, this,
                 SLOT(notificationClosed(uint, uint)));
}

/// Buttons that nobody answers any more go; what the user has not read yet stays.
DesktopNotifications::~DesktopNotifications() {
    for (auto shown = shown_.begin(); shown != shown_.end(); ++shown) {
        if (hasActions_ && !shown->actions.empty()) {
            shown->actions.clear();
            bus_.send(notifyCall(*shown, shown.key()));
        }
    }
}

bool DesktopNotifications::deliver(const UserNotification& notification) {
    if (!bus_.isConnected()) {
        logOnce(u"there is no session bus"_s);
        return false;
    }
    switch (server_) {
        case Server::Unknown:
            askForCapabilities();
            [[fallthrough]];
        case Server::Asked:
            waiting_.push_back(notification);
            break;
        case Server::Known:
            sendInTurn(notification);
    }
    return true;
}

void DesktopNotifications::askForCapabilities() {
    server_ = Server::Asked;
    auto* watcher = new QDBusPendingCallWatcher(
        bus_.asyncCall(serverCall(u"GetCapabilities"_s), timeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QStringList> reply = *watcher;
        const auto waiting = std::exchange(waiting_, {});
        if (reply.isError()) {
            server_ = Server::Unknown;
            logOnce(reply.error().message());
        } else {
            server_ = Server::Known;
            readsMarkup_ = reply.value().contains(u"body-markup"_s);
            hasActions_ = reply.value().contains(u"actions"_s);
            for (const UserNotification& notification : waiting) {
                sendInTurn(notification);
            }
        }
        watcher->deleteLater();
    });
}

void DesktopNotifications::sendInTurn(const UserNotification& notification) {
    if (notification.identifier.isEmpty()) {
        send(notification);
        return;
    }
    Kind& kind = kinds_[notification.identifier];
    if (kind.isBeingSent) {
        kind.next = notification;
    } else {
        kind.isBeingSent = true;
        send(notification);
    }
}

QDBusMessage DesktopNotifications::notifyCall(const UserNotification& notification,
                                              uint replaced) const {
    QVariantMap hints{{u"desktop-entry"_s, u"com.tarnworks.Orlop"_s}};
    if (!notification.category.isEmpty()) {
        hints.insert(u"category"_s, notification.category);
    }
    QStringList actions{defaultAction, u"Open"_s};
    for (const UserNotification::Action& action : notification.actions) {
        if (hasActions_) {
            actions << action.key << action.title;
        }
    }
    QDBusMessage call = serverCall(u"Notify"_s);
    call << u"Orlop"_s << replaced << u"com.tarnworks.Orlop"_s << bounded(notification.title)
         << body(notification.text) << actions << hints << -1;
    return call;
}

void DesktopNotifications::send(const UserNotification& notification) {
    const QDBusMessage call =
        notifyCall(notification, kinds_.value(notification.identifier).number);
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, timeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, notification, withdrawals = withdrawals_] {
                const QDBusPendingReply<uint> reply = *watcher;
                uint number = reply.isError() ? 0 : reply.value();
                if (number != 0 && withdrawals != withdrawals_) {
                    withdraw(std::exchange(number, 0));
                }
                wasSent(notification, number);
                watcher->deleteLater();
            });
}

void DesktopNotifications::wasSent(const UserNotification& notification, uint number) {
    const QString& identifier = notification.identifier;
    if (number != 0) {
        shown_.insert(number, notification);
    }
    if (identifier.isEmpty()) {
        return;
    }
    Kind& kind = kinds_[identifier];
    kind.number = number;
    kind.isBeingSent = kind.next.has_value();
    if (const auto next = std::exchange(kind.next, std::nullopt)) {
        send(*next);
    }
}

QString DesktopNotifications::body(const QString& text) const {
    const QString plain = bounded(text);
    return readsMarkup_ ? plain.toHtmlEscaped() : plain;
}

void DesktopNotifications::withdrawAll() {
    waiting_.clear();
    for (Kind& kind : kinds_) {
        kind.next.reset();
    }
    ++withdrawals_;
    for (const uint number : shown_.keys()) {
        withdraw(number);
    }
}

void DesktopNotifications::withdraw(uint number) {
    QDBusMessage call = serverCall(u"CloseNotification"_s);
    call << number;
    bus_.asyncCall(call, timeout);
}

/// What it showed went with it, and the next one counts anew: our numbers would be others' there.
void DesktopNotifications::serverIsGone() {
    shown_.clear();
    for (Kind& kind : kinds_) {
        kind.number = 0;
    }
    if (server_ == Server::Known) {
        server_ = Server::Unknown;
    }
}

void DesktopNotifications::setActivationHandler(std::function<void(const QString&)> handler) {
    activated_ = std::move(handler);
}

/// Comes before the action. Where the desktop lets no program take the focus by itself, the window
/// system's plug-in looks for it here.
void DesktopNotifications::activationToken(uint number, const QString& token) {
    if (shown_.contains(number)) {
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    }
}

void DesktopNotifications::actionInvoked(uint number, const QString& action) {
    if (!shown_.contains(number)) {
        return;
    }
    // A copy: what is performed may take it away.
    const UserNotification notification = shown_.value(number);
    for (const UserNotification::Action& offered : notification.actions) {
        if (offered.key == action) {
            offered.perform();
            return;
        }
    }
    if (action == defaultAction && activated_) {
        activated_(notification.identifier);
    }
}

void DesktopNotifications::logOnce(const QString& reason) {
    if (!hasLogged_) {
        hasLogged_ = true;
        log(u"notifications are not shown: "_s + reason, LogLevel::Warning);
    }
}

void DesktopNotifications::notificationClosed(uint number, uint) {
    shown_.remove(number);
}

std::unique_ptr<UserNotificationCenter> makeUserNotificationCenter() {
    return std::make_unique<DesktopNotifications>();
}

}  // namespace platform
