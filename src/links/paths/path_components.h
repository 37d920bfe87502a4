#pragma once

#include <QString>

namespace links {

/// Paths as text; nothing here looks at the disk. Slashes at the end and repeated slashes do not
/// count.

/// "c.zip" of "/a/c.zip" and of "c.zip/"; "/" of "/"; empty of an empty path.
[[nodiscard]] QString lastPathComponent(const QString& path);
/// "/a" of "/a/c.zip"; "/" of "/a" and "/"; empty of "a".
[[nodiscard]] QString stringByDeletingLastPathComponent(const QString& path);
[[nodiscard]] QString stringByAppendingPathComponent(const QString& path, const QString& component);

/// What stands behind the last dot of the last component, without the dot. Empty: none, as in
/// ".profile" and "a.".
[[nodiscard]] QString pathExtension(const QString& path);
[[nodiscard]] QString stringByDeletingPathExtension(const QString& path);
/// With a dot and `extension` at the end; slashes at the end go first. "" and "/" stay.
[[nodiscard]] QString stringByAppendingPathExtension(const QString& path, const QString& extension);

}  // namespace links
