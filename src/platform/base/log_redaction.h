#pragma once

#include <QString>

namespace platform {

/// The line without what is nobody's business: passwords of the addresses in it, and the values of
/// the header fields `Cookie`, `Set-Cookie`, `Authorization` and `Proxy-Authorization`. Any thread.
[[nodiscard]] QString withoutSecrets(QString line);

}  // namespace platform
