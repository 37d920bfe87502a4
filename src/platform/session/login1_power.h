#pragma once

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QObject>

#include "platform/session/clock_watcher.h"
#include "platform/session/power.h"

namespace platform {

/// By way of systemd's login manager (org.freedesktop.login1).
class Login1Power final : public QObject, public Power {
    Q_OBJECT

public:
    Login1Power();

    void observe(Observers observers) override;
    bool requestSleep() override;
    bool requestShutDown() override;

private Q_SLOTS:
    void prepareForSleep(bool begins);

private:
    void takeInhibitor();
    bool request(const QString& method);

    QDBusConnection bus_;
    Observers observers_;
    /// While we hold it the machine waits for us before it goes to sleep.
    QDBusUnixFileDescriptor inhibitor_;
    ClockWatcher clockWatcher_;
};

}  // namespace platform
