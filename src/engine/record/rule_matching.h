#pragma once

#include <QStringList>
#include <QVariant>

namespace engine {

/// Whether the labels of `pattern`, read from the right, are the last ones of `host`. A pattern
/// without labels, or with more than the host, is not.
[[nodiscard]] bool hostComponentsMatch(const QStringList& pattern, const QStringList& host);

/// A host as people write it where one is asked for: "https://example.org/", "*.example.net",
/// "example.com:8080" and "example.org." stand for the name alone. Empty: it is no host, or an
/// address with more than a host in it.
[[nodiscard]] QString hostFromText(const QString& text);
/// "*.zip" and ".zip" stand for "zip". Empty: it is no extension.
[[nodiscard]] QString extensionFromText(const QString& text);

/// Whether a host (in any case) lies in or below one of `patterns`, which are as people write them.
[[nodiscard]] bool isHostInPatterns(const QString& host, const QStringList& patterns);

/// Whether a file's name ends in one of `extensions`, in any case: "zip", or several as "tar.gz".
[[nodiscard]] bool hasExtensionInList(const QString& fileName, const QStringList& extensions);

}  // namespace engine
