#pragma once

#include <QString>
#include <QStringList>
#include <functional>

namespace links {

/// A separator of Unicode, a tab, a line break of any kind, or a zero-width space, which pages
/// put around addresses to let lines break there.
[[nodiscard]] bool isWhitespaceOrNewline(QChar unit);
/// Where text is split into lines: U+000A to U+000D, U+0085, U+2028 and U+2029.
[[nodiscard]] bool isNewline(QChar unit);

/// Without whitespace and newlines at both ends.
[[nodiscard]] QString trimmedString(const QString& text);
[[nodiscard]] QStringView trimmedView(QStringView text);

/// Each text without the units at both ends that `isTrimmed` accepts.
[[nodiscard]] QStringList stringsByTrimmingCharactersInSet(
    const QStringList& texts, const std::function<bool(QChar)>& isTrimmed);

}  // namespace links
