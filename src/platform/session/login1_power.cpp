#include "platform/session/login1_power.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <limits>
#include <utility>

#include "platform/base/log.h"
#include "platform/session/login1_manager.h"

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto goingOn = u"Downloads are going on."_s;

}  // namespace

Login1Power::Login1Power()
    : bus_(QDBusConnection::systemBus()),
      sleepDelay_({u"sleep:shutdown"_s, u"Downloads are saved first."_s, u"delay"_s}),
      idleBlock_({u"idle"_s, goingOn, u"block"_s}),
      desktopBlock_(goingOn),
      clockWatcher_([this] {
          if (observers_.timeDidChange) {
              observers_.timeDidChange();
          }
      }) {
    for (const Login1Inhibitor* inhibitor : {&sleepDelay_, &idleBlock_}) {
        connect(inhibitor, &Login1Inhibitor::refused, this, &Login1Power::logOnce);
    }
    bus_.connect(login1::service, login1::path, login1::interface, u"PrepareForSleep"_s, this,
                 SLOT(prepareForSleep(bool)));
    bus_.connect(login1::service, login1::path, login1::interface, u"PrepareForShutdown"_s, this,
                 SLOT(prepareForShutdown(bool)));
}

void Login1Power::observe(Observers observers) {
    observers_ = std::move(observers);
    if (observers_.willSleep) {
        sleepDelay_.take(bus_);
    } else {
        sleepDelay_.release();
    }
}

void Login1Power::setPreventsIdleSleep(bool prevents) {
    // Where it is refused, it is not asked for again at every report of progress.
    if (std::exchange(preventsIdleSleep_, prevents) == prevents) {
        return;
    }
    if (prevents) {
        idleBlock_.take(bus_);
        desktopBlock_.take();
    } else {
        idleBlock_.release();
        desktopBlock_.release();
    }
}

void Login1Power::prepareForSleep(bool begins) {
    if (begins && observers_.willSleep) {
        observers_.willSleep();
        sleepDelay_.release();
    } else if (!begins && observers_.didWake) {
        sleepDelay_.take(bus_);
        observers_.didWake();
    }
}

/// Nobody may be left to be asked, and the display dies before its programs.
void Login1Power::prepareForShutdown(bool begins) {
    if (begins && observers_.willShutDown) {
        observers_.willShutDown();
        sleepDelay_.release();
    } else if (!begins && observers_.willSleep) {
        sleepDelay_.take(bus_);
    }
}

void Login1Power::request(const QString& method, Answer answer) {
    if (!bus_.isConnected()) {
        answer(u"there is no system bus"_s);
        return;
    }
    QDBusMessage call = login1::managerCall(method);
    call << true;  // The system may ask the user to authenticate.
    constexpr int noTimeOut = std::numeric_limits<int>::max();
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, noTimeOut), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [watcher, answer = std::move(answer)] {
                if (watcher->isError()) {
                    log(u"the system refuses: "_s + watcher->error().message());
                }
                watcher->deleteLater();
                answer(watcher->isError() ? watcher->error().message() : QString());
            });
}

void Login1Power::requestSleep(Answer answer) {
    request(u"Suspend"_s, std::move(answer));
}

void Login1Power::requestShutDown(Answer answer) {
    request(u"PowerOff"_s, std::move(answer));
}

void Login1Power::logOnce(const QString& reason) {
    if (!hasLogged_) {
        hasLogged_ = true;
        log(u"the machine's sleep is not known of: "_s + reason, LogLevel::Warning);
    }
}

std::unique_ptr<Power> makePower() {
    return std::make_unique<Login1Power>();
}

}  // namespace platform
