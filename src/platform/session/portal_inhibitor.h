#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>

namespace platform {

/// Asks the desktop not to put the machine to sleep by itself (org.freedesktop.portal.Inhibit):
/// some have a clock of their own for that, which the login manager's locks do not stop. What the
/// user orders is not held back. It ends with our connection to the bus at the latest.
class PortalInhibitor final : public QObject {
    Q_OBJECT

public:
    explicit PortalInhibitor(QString reason) : reason_(std::move(reason)) {}

    /// Asks for it; nothing happens if it is there or asked for, or if the desktop has no portal.
    void take();
    void release();

private:
    void close();

    const QString reason_;
    QDBusConnection bus_ = QDBusConnection::sessionBus();
    QDBusObjectPath request_;  ///< Empty: none is held.
    bool isWanted_ = false;
    bool isAsked_ = false;
};

}  // namespace platform
