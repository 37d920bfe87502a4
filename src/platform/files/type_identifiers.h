#pragma once

#include <QString>
#include <QStringList>

namespace platform {

/// The canonical name of a MIME type. Empty: not known.
[[nodiscard]] QString typeIdentifierForMimeType(const QString& mimeType);
/// All types that an extension (without its dot) can belong to, the preferred first.
[[nodiscard]] QStringList typeIdentifiersForExtension(const QString& extension);
/// The extension that a type's files usually have. Empty: none.
[[nodiscard]] QString preferredExtensionForType(const QString& identifier);
/// The MIME type for an extension. Empty: none.
[[nodiscard]] QString mimeTypeForExtension(const QString& extension);

}  // namespace platform
