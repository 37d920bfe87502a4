#include "engine/record/known_file.h"

#include "engine/record/user_settings.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {

QString KnownFile::rangeValidator() const {
    if (!entityTag.isEmpty() && !entityTag.startsWith(u"W/"))
        return entityTag;
    return isDateWeak ? QString() : lastModified;
}

const QStringList& knownFileKeys() {
    static const QStringList list{keys::expectedBytes,     keys::entityTag,
                                  keys::lastModified,      keys::isLastModifiedWeak,
                                  keys::contentType,       keys::contentEncoding,
                                  keys::partialFileNumber, keys::serverChecksum};
    return list;
}

KnownFile knownFile(const UserSettings& settings) {
    return {settings.value(keys::expectedBytes).toLongLong(),
            settings.string(keys::entityTag),
            settings.string(keys::lastModified),
            settings.boolean(keys::isLastModifiedWeak),
            settings.string(keys::contentType),
            settings.string(keys::contentEncoding)};
}

void storeKnownFile(UserSettings& settings, const KnownFile& file) {
    forgetFile(settings);
    if (file.length > 0)
        settings.set(keys::expectedBytes, file.length);
    if (file.isDateWeak)
        settings.set(keys::isLastModifiedWeak, true);
    const std::pair<const QString&, const QString&> texts[] = {
        {keys::entityTag, file.entityTag},
        {keys::lastModified, file.lastModified},
        {keys::contentType, file.mediaType},
        {keys::contentEncoding, file.contentEncoding}};
    for (const auto& [key, text] : texts) {
        if (!text.isEmpty())
            settings.set(key, text);
    }
}

void forgetFile(UserSettings& settings) {
    for (const QString& key : knownFileKeys())
        settings.remove(key);
}

}  // namespace engine
