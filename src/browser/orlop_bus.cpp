#include "browser/orlop_bus.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QTimer>

namespace browser {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString service = u"com.tarnworks.Orlop"_s;
const QString path = u"/com/tarnworks/Orlop"_s;
const QString properties = u"org.freedesktop.DBus.Properties"_s;
const QString standardErrors = u"org.freedesktop.DBus.Error."_s;
constexpr int countTimeout = 10000;

}  // namespace

bool BusAnswer::reachedNobody() const {
    if (!error.startsWith(standardErrors))
        return error == "org.qtproject.QtDBus.Error.InvalidService"_L1;
    const QStringView rest = QStringView(error).sliced(standardErrors.size());
    return rest.startsWith("Spawn."_L1) || rest == "ServiceUnknown"_L1 ||
           rest == "NameHasNoOwner"_L1 || rest == "NoServer"_L1 || rest == "UnknownMethod"_L1 ||
           rest == "UnknownObject"_L1 || rest == "UnknownInterface"_L1 ||
           rest == "AccessDenied"_L1 || rest == "LimitsExceeded"_L1;
}

bool BusAnswer::wasCutOff() const {
    return error == standardErrors + "NoReply"_L1 || error == standardErrors + "Disconnected"_L1;
}

OrlopBus::OrlopBus(QDBusConnection connection) : connection_(std::move(connection)) {
    qDBusRegisterMetaType<QList<QVariantMap>>();
}

void OrlopBus::call(const QString& method, const QVariantList& arguments, int timeout,
                    QObject* context, const Answered& answered) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, service, method);
    message.setArguments(arguments);
    send(message, timeout, context, answered);
}

void OrlopBus::send(const QDBusMessage& message, int timeout, QObject* context,
                    const Answered& answered) {
    if (!connection_.isConnected()) {
        QTimer::singleShot(0, context, [answered] {
            answered(BusAnswer{standardErrors + "NoServer"_L1, {}, {}});
        });
        return;
    }
    auto* const watcher =
        new QDBusPendingCallWatcher(connection_.asyncCall(message, timeout), context);
    connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, answered] {
        const QDBusMessage reply = watcher->reply();
        watcher->deleteLater();
        if (reply.type() == QDBusMessage::ReplyMessage)
            answered(BusAnswer{{}, {}, reply.arguments()});
        else
            answered(BusAnswer{reply.errorName(), reply.errorMessage(), {}});
    });
}

void OrlopBus::follow() {
    if (std::exchange(follows_, true)) {
        readCount();
        return;
    }
    connection_.connect(service, path, properties, u"PropertiesChanged"_s, this,
                        SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
    auto* const watcher = new QDBusServiceWatcher(service, connection_,
                                                  QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) {
                if (owner.isEmpty())
                    Q_EMIT runningChanged(std::nullopt);
                else
                    readCount();
            });
    readCount();
}

void OrlopBus::readCount() {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, properties, u"Get"_s);
    message.setArguments({service, u"RunningCount"_s});
    message.setAutoStartService(false);
    send(message, countTimeout, this, [this](const BusAnswer& answer) {
        if (answer.reachedNobody() || answer.values.isEmpty())
            Q_EMIT runningChanged(std::nullopt);
        else
            Q_EMIT runningChanged(answer.values.first().value<QDBusVariant>().variant().toUInt());
    });
}

void OrlopBus::propertiesChanged(const QString& interface, const QVariantMap& changed,
                                 const QStringList& invalidated) {
    const auto count = changed.constFind(u"RunningCount"_s);
    if (interface == service && count != changed.constEnd())
        Q_EMIT runningChanged(count->toUInt());
    else if (invalidated.contains("RunningCount"_L1))
        readCount();
}

}  // namespace browser
