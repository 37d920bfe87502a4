#pragma once

#include <QString>
#include <optional>

namespace links {

/// A place of the system itself, which is passed over when a dropped folder is walked.
[[nodiscard]] bool isTabooSystemPath(const QString& path);
/// The entry under which a file manager lists the network: "Network" with or without slashes.
[[nodiscard]] bool isNetworkPath(const QString& path);

/// The path of a folder's entry, with `basePath` in front if there is one. Nothing: an entry that
/// does not count (negligible, taboo or the network).
[[nodiscard]] std::optional<QString> itemPathWithBasePath(const QString& item,
                                                          const std::optional<QString>& basePath);

/// As the file system compares: by case, unless it takes both for the same file. False if there is
/// no `other`.
[[nodiscard]] bool isEqualToPath(const QString& path, const std::optional<QString>& other);
/// As text, so "/a/bc" begins with "/a/b". False for an empty prefix.
[[nodiscard]] bool hasPathPrefix(const QString& path, const QString& prefix);

}  // namespace links
