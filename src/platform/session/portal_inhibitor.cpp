#include "platform/session/portal_inhibitor.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto portal = u"org.freedesktop.portal.Desktop"_s;

}  // namespace

void PortalInhibitor::take() {
    isWanted_ = true;
    if (isAsked_ || !request_.path().isEmpty() || !bus_.isConnected()) {
        return;
    }
    isAsked_ = true;
    constexpr uint suspend = 4;
    const QString noWindow;
    QDBusMessage call =
        QDBusMessage::createMethodCall(portal, u"/org/freedesktop/portal/desktop"_s,
                                       u"org.freedesktop.portal.Inhibit"_s, u"Inhibit"_s);
    call << noWindow << suspend << QVariantMap{{u"reason"_s, reason_}};
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        isAsked_ = false;
        if (!reply.isError()) {
            request_ = reply.value();
            if (!isWanted_) {
                close();
            }
        }
        watcher->deleteLater();
    });
}

void PortalInhibitor::release() {
    isWanted_ = false;
    if (!request_.path().isEmpty()) {
        close();
    }
}

void PortalInhibitor::close() {
    bus_.send(QDBusMessage::createMethodCall(portal, request_.path(),
                                             u"org.freedesktop.portal.Request"_s, u"Close"_s));
    request_ = {};
}

}  // namespace platform
