#include "platform/files/type_identifiers.h"

#include <QMimeDatabase>
#include <QMimeType>
#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// The best match comes first; an unknown extension has none.
QList<QMimeType> typesForExtension(const QString& extension) {
    if (extension.isEmpty() || extension.contains(u'/'))
        return {};
    const QMimeDatabase database;
    const QString name = u"x."_s + extension;
    QList<QMimeType> types = database.mimeTypesForFileName(name);
    const QMimeType best = database.mimeTypeForFile(name, QMimeDatabase::MatchExtension);
    std::stable_partition(types.begin(), types.end(),
                          [&](const QMimeType& type) { return type == best; });
    return types;
}

}  // namespace

QString typeIdentifierForMimeType(const QString& mimeType) {
    const QString name = mimeType.section(u';', 0, 0).trimmed().toLower();
    return QMimeDatabase().mimeTypeForName(name).name();
}

QStringList typeIdentifiersForExtension(const QString& extension) {
    QStringList names;
    for (const QMimeType& type : typesForExtension(extension))
        names.append(type.name());
    return names;
}

QString preferredExtensionForType(const QString& identifier) {
    return QMimeDatabase().mimeTypeForName(identifier).preferredSuffix();
}

QString mimeTypeForExtension(const QString& extension) {
    return typeIdentifiersForExtension(extension).value(0);
}

}  // namespace platform
