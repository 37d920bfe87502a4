#pragma once

#include <QStringList>

namespace engine {

/// Which hosts are accelerated, and how much. Reads and writes the user defaults; main thread.
class AccelerationSettings {
public:
    [[nodiscard]] static bool accelerates();
    static void setAccelerates(bool accelerates);
    /// Connections for one file, 2 to 9.
    [[nodiscard]] static qint64 accelerationFactor();
    static void setAccelerationFactor(qint64 factor);
    /// Bytes, at least 1.
    [[nodiscard]] static qint64 acceleratorFractionMinimumSize();

    [[nodiscard]] static QStringList accelerationHostWhitelist();
    static void setAccelerationHostWhitelist(const QStringList& hosts);
    [[nodiscard]] static QStringList accelerationHostBlacklist();
    static void setAccelerationHostBlacklist(const QStringList& hosts);

    /// For a host in the form in which the limits count it; an empty one is listed as "?".
    [[nodiscard]] static bool acceleratesHost(const QString& queueRelevantHost);
    static void toggleAccelerationOfHost(const QString& queueRelevantHost);
};

}  // namespace engine
