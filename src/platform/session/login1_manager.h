#pragma once

#include <QDBusMessage>

namespace platform::login1 {

/// Where systemd's login manager is found on the system bus.
inline const QString service = QStringLiteral("org.freedesktop.login1");
inline const QString path = QStringLiteral("/org/freedesktop/login1");
inline const QString interface = QStringLiteral("org.freedesktop.login1.Manager");

[[nodiscard]] inline QDBusMessage managerCall(const QString& method) {
    return QDBusMessage::createMethodCall(service, path, interface, method);
}

}  // namespace platform::login1
