#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "platform/files/files.h"

namespace links {

using platform::volumePath;

/// Exists and is a folder, also by way of a link.
[[nodiscard]] bool isFolderPath(const QString& path);

/// Whether the folder, with its tilde expanded, is there or could be made with all folders above
/// it. Nothing is made below the mount point of a volume that is away.
[[nodiscard]] bool checkFolderPathAndCreateIfNecessary(const QString& path);

/// Removes a folder if nothing is in it but negligible files (see `isNegligibleFilename`), which go
/// along. Whether it is gone. A link to a folder is removed itself, with nothing behind it.
bool removeFolderIfVirtuallyEmpty(const QString& path);

/// The path with its tilde expanded, if something exists there; else where the bookmark
/// (`platform::fileBookmark`) leads, if something exists there.
[[nodiscard]] std::optional<QString> existingPathWithFallBackAliasData(const QString& path,
                                                                       const QByteArray& bookmark);

/// Bytes in a file, or in all files below a folder; links are not followed, and what cannot be read
/// does not count. Nothing: it does not exist.
[[nodiscard]] std::optional<quint64> totalFileSizeAtPath(const QString& path);

/// The folder `name` below `directory`, in the first of the user's languages that has one: in
/// "LANGUAGE.lproj", in "en.lproj" or "English.lproj", or directly in it. Nothing: there is none.
[[nodiscard]] std::optional<QString> localizedPathToDirectory(const QString& name,
                                                              const QString& directory);

}  // namespace links
