#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace platform {

/// The mount points named in the text of /proc/self/mountinfo (proc(5)), undone of its octal
/// escapes.
[[nodiscard]] QStringList mountPoints(const QByteArray& mountInfo);

/// `volumePath` for a machine on which these are mounted.
[[nodiscard]] QString volumePathAmong(const QStringList& mountPoints, const QString& path);

}  // namespace platform
