#pragma once

#include <QString>

namespace engine {

class UserSettings;

/// What servers said about the file that partial data belongs to. With it a resume can tell whether
/// it would go on with the same file.
struct KnownFile {
    qint64 length = 0;  ///< 0: not known.
    QString entityTag;
    QString lastModified;  ///< Only if it can tell two versions apart.

    /// For "If-Range": what proves that two answers are parts of the same bytes. Empty: nothing.
    [[nodiscard]] QString rangeValidator() const;

    friend bool operator==(const KnownFile&, const KnownFile&) = default;
};

[[nodiscard]] KnownFile knownFile(const UserSettings& settings);
void forgetFile(UserSettings& settings);

}  // namespace engine
