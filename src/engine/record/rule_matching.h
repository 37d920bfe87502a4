#pragma once

#include <QStringList>
#include <QVariant>

namespace engine {

/// Whether the labels of `pattern`, read from the right, are the last ones of `host`. A pattern
/// without labels, or with more than the host, is not.
[[nodiscard]] bool hostComponentsMatch(const QStringList& pattern, const QStringList& host);

/// Whether a host (in any case) lies in or below one of `patterns`.
[[nodiscard]] bool isHostInPatterns(const QString& host, const QStringList& patterns);

/// Whether a file's extension, without its dot and in any case, is one of `extensions`. An empty
/// extension is not.
[[nodiscard]] bool isExtensionInList(const QString& extension, const QStringList& extensions);

}  // namespace engine
