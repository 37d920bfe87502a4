#include "platform/files/type_identifiers.h"

#include <QMimeDatabase>
#include <QMimeType>
#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// What the database lacks, or knows under an extension that nobody uses.
struct KnownType {
    QLatin1StringView name;
    QLatin1StringView identifier;
    QLatin1StringView extension;
};

constexpr std::array<KnownType, 13> knownTypes{{
    {"text/calendar"_L1, "text/calendar"_L1, "ics"_L1},
    {"text/vcard"_L1, "text/vcard"_L1, "vcf"_L1},
    {"application/vnd.ms-powerpoint"_L1, "application/vnd.ms-powerpoint"_L1, "ppt"_L1},
    {"video/quicktime"_L1, "video/quicktime"_L1, "mov"_L1},
    {"application/pgp-keys"_L1, "application/pgp-keys"_L1, "asc"_L1},
    {"application/vnd.apple.mpegurl"_L1, "application/vnd.apple.mpegurl"_L1, "m3u8"_L1},
    {"application/x-mpegurl"_L1, "application/vnd.apple.mpegurl"_L1, "m3u8"_L1},
    {"audio/x-mpegurl"_L1, "audio/x-mpegurl"_L1, "m3u8"_L1},
    {"application/dash+xml"_L1, "application/dash+xml"_L1, "mpd"_L1},
    {"application/wasm"_L1, "application/wasm"_L1, "wasm"_L1},
    {"image/jpg"_L1, "image/jpeg"_L1, "jpg"_L1},
    {"audio/opus"_L1, "audio/opus"_L1, "opus"_L1},
    {"audio/webm"_L1, "audio/webm"_L1, "webm"_L1},
}};

const KnownType* knownType(const QString& name) {
    const auto found = std::find_if(knownTypes.begin(), knownTypes.end(),
                                    [&](const KnownType& type) { return name == type.name; });
    return found == knownTypes.end() ? nullptr : &*found;
}

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
    if (const KnownType* known = knownType(name))
        return known->identifier;
    // Most files come as this, and the database takes a while to be read.
    if (name == "application/octet-stream"_L1)
        return name;
    return QMimeDatabase().mimeTypeForName(name).name();
}

QStringList typeIdentifiersForExtension(const QString& extension) {
    QStringList names;
    for (const QMimeType& type : typesForExtension(extension))
        names.append(type.name());
    for (const KnownType& known : knownTypes) {
        if (extension.compare(known.extension, Qt::CaseInsensitive) == 0 &&
            !names.contains(known.identifier))
            names.append(known.identifier);
    }
    return names;
}

QString preferredExtensionForType(const QString& identifier) {
    if (const KnownType* known = knownType(identifier))
        return known->extension;
    return QMimeDatabase().mimeTypeForName(identifier).preferredSuffix();
}

QString mimeTypeForExtension(const QString& extension) {
    return typeIdentifiersForExtension(extension).value(0);
}

}  // namespace platform
