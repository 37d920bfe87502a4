#pragma once

#include <QString>
#include <optional>

namespace links {

struct AvailablePath {
    /// Empty: every number is taken.
    QString path;
    /// The path is the one that the file has already.
    bool isMatch = false;
};

/// A path at which a new file can be written: `path` if nothing exists there, else the first that
/// is free among `path`, `counterPrefix` and a number from 1 on, before the extension with
/// `preserveExtension`. On the way there `currentPath`, where the file lies already, will do.
///
/// The last component is shortened where it would pass 255 bytes, less `reservedBytes` for what
/// the caller is going to append. A free path may be taken a moment later: create without
/// replacing.
[[nodiscard]] AvailablePath availablePathWithCurrentPath(const QString& path,
                                                         const std::optional<QString>& currentPath,
                                                         const QString& counterPrefix,
                                                         bool preserveExtension,
                                                         qsizetype reservedBytes = 0);

/// With no current path, a blank before the number, and the extension preserved.
[[nodiscard]] QString availablePath(const QString& path, qsizetype reservedBytes = 0);

}  // namespace links
