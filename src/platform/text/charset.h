#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace platform {

/// The text of bytes in a charset, by any of its names in the IANA registry; what is malformed
/// becomes U+FFFD. Nothing: no such charset. Any thread.
[[nodiscard]] std::optional<QString> decodedText(const QByteArray& bytes, const QString& charset);

}  // namespace platform
