#pragma once

#include <QStringList>

namespace platform {
class UserDefaults;
}

namespace engine {

/// Which hosts are accelerated, and how much. Reads and writes the user defaults; main thread.
class AccelerationSettings {
public:
    explicit AccelerationSettings(platform::UserDefaults& defaults) : defaults_(defaults) {}

    [[nodiscard]] bool accelerates() const;
    void setAccelerates(bool accelerates);
    /// Connections for one file, 2 to 9.
    [[nodiscard]] qint64 accelerationFactor() const;
    void setAccelerationFactor(qint64 factor);
    /// Bytes, at least 1.
    [[nodiscard]] qint64 acceleratorFractionMinimumSize() const;

    /// Whether fast connections help slow ones.
    [[nodiscard]] bool sharesSlowParts() const;
    /// Whether parts lie at their places in the file, where the file system can have that.
    [[nodiscard]] bool writesPartsInPlace() const;

    [[nodiscard]] QStringList accelerationHostWhitelist() const;
    void setAccelerationHostWhitelist(const QStringList& hosts);
    [[nodiscard]] QStringList accelerationHostBlacklist() const;
    void setAccelerationHostBlacklist(const QStringList& hosts);

    /// For a host in the form in which the limits count it; an empty one is listed as "?".
    [[nodiscard]] bool acceleratesHost(const QString& queueRelevantHost) const;
    void toggleAccelerationOfHost(const QString& queueRelevantHost);

private:
    platform::UserDefaults& defaults_;
};

}  // namespace engine
