#pragma once

#include <QString>
#include <optional>
#include <vector>

namespace platform {

struct Cookie;

/// A file that cannot be understood is kept aside, and there are no cookies. Nothing: it cannot be
/// read, and must not be written over.
[[nodiscard]] std::optional<std::vector<Cookie>> readCookieFile(const QString& path);
/// 0600, whole or not at all. A failure is logged.
void writeCookieFile(const QString& path, const std::vector<Cookie>& cookies);

}  // namespace platform
