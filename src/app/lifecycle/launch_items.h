#pragma once

#include <QStringList>

namespace app {

/// What a command line names: existing files and folders, by absolute path, and everything else,
/// which is text with addresses in it.
struct LaunchItems {
    QStringList paths;
    QStringList addresses;

    [[nodiscard]] bool isEmpty() const { return paths.isEmpty() && addresses.isEmpty(); }
    /// All of them, in a form that means the same in every working folder.
    [[nodiscard]] QStringList all() const { return paths + addresses; }
};

/// Relative paths are those of the working folder of this process.
[[nodiscard]] LaunchItems launchItems(const QStringList& items);

}  // namespace app
