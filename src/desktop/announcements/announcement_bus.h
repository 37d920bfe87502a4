#pragma once

#include <QString>

/// How announcements travel: as signals on the session bus, from anybody to all.
namespace desktop::announcement_bus {

inline const QString path = QStringLiteral("/com/tarnworks/AIH");
inline const QString announcementInterface =
    QStringLiteral("com.tarnworks.AIHAnnouncementNotification");
inline const QString requestInterface = QStringLiteral("com.tarnworks.AIHRequestNotification");
inline const QString posted = QStringLiteral("Posted");

}  // namespace desktop::announcement_bus
