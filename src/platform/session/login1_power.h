#pragma once

#include <QDBusConnection>
#include <QObject>

#include "platform/net/default_route.h"
#include "platform/session/clock_watcher.h"
#include "platform/session/login1_inhibitor.h"
#include "platform/session/portal_inhibitor.h"
#include "platform/session/power.h"

namespace platform {

/// By way of systemd's login manager (org.freedesktop.login1).
class Login1Power final : public QObject, public Power {
    Q_OBJECT

public:
    Login1Power();

    void observe(Observers observers) override;
    void setPreventsIdleSleep(bool prevents) override;
    void requestSleep(Answer answer) override;
    void requestShutDown(Answer answer) override;
    [[nodiscard]] bool hasNetwork() const override { return hasDefaultRoute(); }

private Q_SLOTS:
    void prepareForSleep(bool begins);
    void prepareForShutdown(bool begins);

private:
    void request(const QString& method, Answer answer);
    void logOnce(const QString& reason);

    QDBusConnection bus_;
    Observers observers_;
    /// While we hold it the machine waits for us before it goes to sleep.
    Login1Inhibitor sleepDelay_;
    Login1Inhibitor idleBlock_;
    PortalInhibitor desktopBlock_;
    ClockWatcher clockWatcher_;
    bool preventsIdleSleep_ = false;
    bool hasLogged_ = false;
};

}  // namespace platform
