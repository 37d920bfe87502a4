#include "desktop/status/status_notifier_host.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <utility>

namespace desktop {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString watcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString watcherPath = u"/StatusNotifierWatcher"_s;

}  // namespace

StatusNotifierHost::StatusNotifierHost(const QDBusConnection& bus) : bus_(bus) {
    if (!bus_.isConnected()) {
        state_ = State::Absent;
        return;
    }
    auto* watcher =
        new QDBusServiceWatcher(watcherName, bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { ownerChanged(owner); });
    for (const QString& signal :
         {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s}) {
        bus_.connect(watcherName, watcherPath, watcherName, signal, this, SLOT(ask()));
    }
    ask();
}

void StatusNotifierHost::ownerChanged(const QString& newOwner) {
    isAnother_ = true;
    if (newOwner.isEmpty()) {
        ++question_;
        setState(State::Absent, std::exchange(isAnother_, false));
    } else {
        ask();
    }
}

/// A watcher that does not answer is as good as none.
void StatusNotifierHost::ask() {
    constexpr int patienceMilliseconds = 3000;
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherName, watcherPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << watcherName << u"IsStatusNotifierHostRegistered"_s;
    call.setAutoStartService(false);
    auto* waiting = new QDBusPendingCallWatcher(bus_.asyncCall(call, patienceMilliseconds), this);
    connect(waiting, &QDBusPendingCallWatcher::finished, this,
            [this, question = ++question_](QDBusPendingCallWatcher* answered) {
                answered->deleteLater();
                if (question != question_) {
                    return;
                }
                const QDBusPendingReply<QDBusVariant> reply = *answered;
                const bool isThere = reply.isValid() && reply.value().variant().toBool();
                setState(isThere ? State::Present : State::Absent,
                         std::exchange(isAnother_, false));
            });
}

void StatusNotifierHost::setState(State state, bool isAnother) {
    if (state_ != state || isAnother) {
        state_ = state;
        Q_EMIT changed();
    }
}

}  // namespace desktop
