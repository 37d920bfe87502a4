#pragma once

#include <QString>
#include <QStringList>

namespace engine {
class Rules;
}
namespace platform {
class UserDefaults;
}

namespace app {

/// What kind of place a file from elsewhere, a request file or the metadata of a bundle, names as
/// the target of a download.
enum class TargetPlace {
    Familiar,   ///< In a folder that the user lets downloads go to.
    Elsewhere,  ///< Anywhere else.
    /// Hidden folders, those of the system, of settings and of programs, and desktop entries: what
    /// is written there runs, or changes what programs do.
    Risky,
};

/// Folders that downloads go to: the general one, those offered for choice and those of rules.
[[nodiscard]] QStringList familiarFolders(platform::UserDefaults& defaults,
                                          const engine::Rules& rules);

/// Of the file or folder `target`, which may begin with a tilde and need not be there; links in it
/// are followed.
[[nodiscard]] TargetPlace placeOfTarget(const QString& target, const QStringList& familiar);

}  // namespace app
