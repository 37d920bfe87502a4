#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <memory>
#include <optional>

#include "platform/base/observation.h"
#include "platform/base/setting.h"

namespace platform {

class RunLoop;

/// The domain of the program's own settings, in `userConfigFolder`.
inline const QString defaultsDomain = QStringLiteral("com.tarnworks.Orlop");

/// The user's settings: flat keys with property-list values. A reading looks at the arguments of
/// this run, then the stored values, then the registered ones.
///
/// Stored as an XML property list in the folder given, 0600, written atomically and shortly after
/// a change (at the latest by `synchronize`); a change made to the file by another program is seen
/// at the next turn of the run loop, without one at the next reading. A file that cannot be read is
/// kept aside under another name, and logged.
///
/// Main thread, except for reading a `UserDefaults` that nobody changes.
class UserDefaults {
public:
    using Observer = std::function<void(const QString& key)>;

    /// `folder` holds `domain`.plist. With no run loop every change is written at once.
    UserDefaults(QString folder, const QString& domain, RunLoop* loop = nullptr);
    ~UserDefaults();
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;

    /// Values above the stored ones, for this run only.
    void setArguments(QVariantMap arguments);
    /// Values below the stored ones; later registrations of a key win.
    void registerDefaults(const QVariantMap& values);

    /// The value in force. Invalid: none.
    [[nodiscard]] QVariant objectForKey(const QString& key) const;
    /// A value of another type is converted where it has a sensible reading ("YES", "true" and
    /// "1" are true, a string of digits is a number) and else reads as false, 0 or nothing.
    [[nodiscard]] bool boolForKey(const QString& key) const;
    [[nodiscard]] qint64 integerForKey(const QString& key) const;
    [[nodiscard]] double doubleForKey(const QString& key) const;
    [[nodiscard]] QString stringForKey(const QString& key) const;
    [[nodiscard]] QVariantList arrayForKey(const QString& key) const;
    [[nodiscard]] QStringList stringArrayForKey(const QString& key) const;
    [[nodiscard]] QVariantMap dictionaryForKey(const QString& key) const;
    [[nodiscard]] bool hasValueForKey(const QString& key) const;

    /// An invalid value removes the key.
    void setObject(const QString& key, const QVariant& value);
    void removeObject(const QString& key);

    /// The stored values only.
    [[nodiscard]] QVariantMap storedValues() const;

    /// A date and such, as opaque data. Absent or unreadable: invalid.
    void archiveObject(const QString& key, const QVariant& value);
    [[nodiscard]] QVariant unarchivedObjectForKey(const QString& key) const;

    /// A folder, stored with its home abbreviated to a tilde.
    void setFolderPath(const QString& key, const QString& path);
    [[nodiscard]] QString folderPathForKey(const QString& key, const QString& defaultPath) const;

    /// Another domain in the same folder, kept for the life of this object.
    [[nodiscard]] UserDefaults& suite(const QString& name);

    /// Calls `observer` after each change of a value in force, also one made to the file by hand:
    /// at the next turn of the run loop, once for a key that changed several times; without a run
    /// loop at once. Ends with what is answered.
    [[nodiscard]] Observation observe(Observer observer);

    /// Writes what has not been written. False: it could not be.
    bool synchronize();

    /// The value in force within the setting's limits.
    template <typename Value>
    [[nodiscard]] Value get(const Setting<Value>& setting) const;
    template <typename Value>
    void set(const Setting<Value>& setting, const Value& value) {
        setObject(setting.name(), QVariant::fromValue(value));
    }

private:
    class Private;
    std::unique_ptr<Private> private_;
};

template <>
bool UserDefaults::get(const Setting<bool>& setting) const;
template <>
qint64 UserDefaults::get(const Setting<qint64>& setting) const;
template <>
double UserDefaults::get(const Setting<double>& setting) const;
template <>
QString UserDefaults::get(const Setting<QString>& setting) const;
template <>
QVariantMap UserDefaults::get(const Setting<QVariantMap>& setting) const;

/// The program's own defaults, as installed by the composition root or by a test.
[[nodiscard]] UserDefaults& standardDefaults();
void installStandardDefaults(UserDefaults* defaults);

/// A value as opaque data and back, in the form of `archiveObject`.
[[nodiscard]] QByteArray archivedData(const QVariant& value);
[[nodiscard]] QVariant valueFromArchivedData(const QByteArray& data);

}  // namespace platform
