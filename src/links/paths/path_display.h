#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace links {

/// What a file manager calls the file, without its extension.
[[nodiscard]] QString displayFilename(const QString& path);

/// The folders down to the file as a file manager would list them: from the home folder, from a
/// volume, or from "/". None: the path does not exist. With a base path that has fewer of them,
/// only what lies below it. The last one goes unless `includeFileName`.
[[nodiscard]] QStringList pathComponentsToDisplayRelativeToPath(
    const QString& path, const std::optional<QString>& basePath, bool includeFileName);

/// These components with an arrow between them, or for a path that does not exist the path and
/// whether it was not found or its volume is away.
[[nodiscard]] QString readablePathRepresentationRelativeToPath(
    const QString& path, const std::optional<QString>& basePath, bool includeFileName);
[[nodiscard]] QString readablePathRepresentation(const QString& path);

}  // namespace links
