#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include "platform/base/user_defaults.h"

namespace app {

/// The general downloads folder and the folders that are offered for choice. Paths are abbreviated
/// with a tilde. Main thread.
class Folders {
public:
    explicit Folders(platform::UserDefaults& defaults);

    /// What is offered as long as the user has chosen none: the desktop and the downloads folder.
    [[nodiscard]] static QStringList defaultFolders();

    [[nodiscard]] QString downloadsFolder() const;
    /// Also offers it from now on.
    void setDownloadsFolder(const QString& path);

    [[nodiscard]] QStringList recentDownloadsFolders() const;
    /// Only the general folder is offered from now on.
    void clearRecentDownloadFolders();

private:
    platform::UserDefaults& defaults_;
};

/// Where downloads go by themselves, tildes expanded.
[[nodiscard]] QStringList generalFolderAndThoseOfRules(const platform::UserDefaults& defaults,
                                                       const QVariantList& specialCases);

}  // namespace app
