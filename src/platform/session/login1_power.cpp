#include "platform/session/login1_power.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto service = u"org.freedesktop.login1"_s;
const auto path = u"/org/freedesktop/login1"_s;
const auto interface = u"org.freedesktop.login1.Manager"_s;
constexpr int timeout = 5000;

QDBusMessage managerCall(const QString& method) {
    return QDBusMessage::createMethodCall(service, path, interface, method);
}

}  // namespace

Login1Power::Login1Power()
    : bus_(QDBusConnection::systemBus()), clockWatcher_([this] {
          if (observers_.timeDidChange) {
              observers_.timeDidChange();
          }
      }) {
    bus_.connect(service, path, interface, u"PrepareForSleep"_s, this, SLOT(prepareForSleep(bool)));
}

void Login1Power::observe(Observers observers) {
    observers_ = std::move(observers);
    if (observers_.willSleep) {
        takeInhibitor();
    } else {
        inhibitor_ = {};
    }
}

void Login1Power::takeInhibitor() {
    QDBusMessage call = managerCall(u"Inhibit"_s);
    call << u"sleep"_s << u"Orlop"_s << u"Downloads are paused before the machine sleeps."_s
         << u"delay"_s;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, timeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *watcher;
        if (reply.isValid() && observers_.willSleep) {
            inhibitor_ = reply.value();
        }
        watcher->deleteLater();
    });
}

void Login1Power::prepareForSleep(bool begins) {
    if (begins && observers_.willSleep) {
        observers_.willSleep();
        inhibitor_ = {};
    } else if (!begins && observers_.didWake) {
        takeInhibitor();
        observers_.didWake();
    }
}

bool Login1Power::request(const QString& method) {
    QDBusMessage call = managerCall(method);
    call << true;  // The system may ask the user to authenticate.
    return bus_.call(call, QDBus::Block, timeout).type() == QDBusMessage::ReplyMessage;
}

bool Login1Power::requestSleep() {
    return request(u"Suspend"_s);
}

bool Login1Power::requestShutDown() {
    return request(u"PowerOff"_s);
}

std::unique_ptr<Power> makePower() {
    return std::make_unique<Login1Power>();
}

}  // namespace platform
