#pragma once

#include <QStringList>

namespace app {

/// The bandwidth limit as the user reads and types it: in thousands of bytes per second, in digits
/// of the user's locale, without separators.
[[nodiscard]] QString throttleLimitText(qint64 bytesPerSecond);
[[nodiscard]] const QStringList& throttleLimitSuggestions();

struct ThrottleLimitEntry {
    /// What the field must show: the text itself if it was right.
    QString text;
    qint64 bytesPerSecond;
};
/// Reads what the user typed, which may be anything; no number at all is taken for 1.
[[nodiscard]] ThrottleLimitEntry throttleLimitEntry(const QString& text);

}  // namespace app
