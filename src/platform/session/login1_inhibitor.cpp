#include "platform/session/login1_inhibitor.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include "platform/session/login1_manager.h"

namespace platform {

using namespace Qt::Literals::StringLiterals;

void Login1Inhibitor::take(const QDBusConnection& bus) {
    if (isWanted_) {
        return;
    }
    if (!bus.isConnected()) {
        Q_EMIT refused(u"there is no system bus"_s);
        return;
    }
    isWanted_ = true;
    QDBusMessage call = login1::managerCall(u"Inhibit"_s);
    call << terms_.what << u"Orlop"_s << terms_.why << terms_.mode;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *watcher;
        if (reply.isError()) {
            isWanted_ = false;
            Q_EMIT refused(reply.error().message());
        } else if (isWanted_) {
            lock_ = reply.value();
        }
        watcher->deleteLater();
    });
}

void Login1Inhibitor::release() {
    isWanted_ = false;
    lock_ = {};
}

}  // namespace platform
