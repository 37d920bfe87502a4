#include "engine/record/known_file.h"

#include "engine/record/user_settings.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {

QString KnownFile::rangeValidator() const {
    return entityTag.isEmpty() || entityTag.startsWith(u"W/") ? lastModified : entityTag;
}

KnownFile knownFile(const UserSettings& settings) {
    return {settings.value(keys::expectedBytes).toLongLong(), settings.string(keys::entityTag),
            settings.string(keys::lastModified)};
}

void forgetFile(UserSettings& settings) {
    for (const QString& key : {keys::expectedBytes, keys::entityTag, keys::lastModified})
        settings.remove(key);
}

}  // namespace engine
