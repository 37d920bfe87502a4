#pragma once

#include <QString>

/// How the program is met on the session bus (resources/dbus/com.tarnworks.Orlop.xml).
namespace scripting::bus {

inline const QString service = QStringLiteral("com.tarnworks.Orlop");
inline const QString path = QStringLiteral("/com/tarnworks/Orlop");
inline const QString interface = QStringLiteral("com.tarnworks.Orlop");
/// What a desktop starts programs by ("D-Bus Activation" of the Desktop Entry Specification).
inline const QString application = QStringLiteral("org.freedesktop.Application");
inline const QString errors = QStringLiteral("com.tarnworks.Orlop.Error.");

inline const QString daemon = QStringLiteral("org.freedesktop.DBus");
inline const QString daemonPath = QStringLiteral("/org/freedesktop/DBus");
inline const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");

/// Whether there is a session bus to be asked. Looking for one that is not there would start one.
[[nodiscard]] bool isThere();

}  // namespace scripting::bus
