#pragma once

#include <QString>

namespace platform {

/// RFC 6265, 5.1.3. Both in lower case.
[[nodiscard]] bool domainMatches(const QString& host, const QString& domain);
/// RFC 6265, 5.1.4.
[[nodiscard]] bool pathMatches(const QString& requestPath, const QString& cookiePath);
[[nodiscard]] QString defaultCookiePath(const QString& requestPath);
/// Whether anybody can register names below it ("co.uk"). Lower case.
[[nodiscard]] bool isPublicSuffix(const QString& domain);

}  // namespace platform
