#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace links {

/// What stands before an occurrence of `suffix`, which may lie anywhere in `text`: the first one,
/// or with `searchBackwards` the last. Not found (an empty `suffix` never is): `text` itself with
/// `returnSelfIfNotFound`, else nothing.
[[nodiscard]] std::optional<QString> substringBeforeSuffix(const QString& text,
                                                           const QString& suffix,
                                                           bool searchBackwards,
                                                           bool returnSelfIfNotFound);
[[nodiscard]] std::optional<QString> substringBeforeSuffix(const QString& text,
                                                           const QString& suffix,
                                                           bool returnSelfIfNotFound);

/// What stands behind an occurrence of `prefix`; otherwise like `substringBeforeSuffix`.
[[nodiscard]] std::optional<QString> substringAfterPrefix(const QString& text,
                                                          const QString& prefix,
                                                          bool searchBackwards,
                                                          bool returnSelfIfNotFound);
[[nodiscard]] std::optional<QString> substringAfterPrefix(const QString& text,
                                                          const QString& prefix,
                                                          bool returnSelfIfNotFound);

/// Whether every one of `searchStrings` occurs in `text`, regardless of case, diacritics and
/// character width. None at all: true.
[[nodiscard]] bool isMatchForSearchStrings(const QString& text, const QStringList& searchStrings);

}  // namespace links
