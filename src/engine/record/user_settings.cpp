#include "engine/record/user_settings.h"

#include <QStringList>
#include <algorithm>

namespace engine {
namespace {

/// All that an archive holds of the settings; "Status Code" is added apart from them.
const QStringList& keptKeys() {
    static const QStringList list{keys::accelerationFailed,
                                  keys::accelerationWorkers,
                                  keys::alias,
                                  keys::date,
                                  keys::done,
                                  keys::downloadFile,
                                  keys::downloadFolder,
                                  keys::downloadPageChain,
                                  keys::name,
                                  keys::keepsName,
                                  keys::identity,
                                  keys::handOver,
                                  keys::page,
                                  keys::rangesDisabled,
                                  keys::referer,
                                  keys::request,
                                  keys::responseURL,
                                  keys::expectedBytes,
                                  keys::entityTag,
                                  keys::lastModified,
                                  keys::isLastModifiedWeak,
                                  keys::contentType,
                                  keys::contentEncoding,
                                  keys::partialFileNumber,
                                  keys::keptBytes,
                                  keys::downloadPageTitle,
                                  keys::leftBehind,
                                  keys::keptAside,
                                  keys::attempts,
                                  keys::speedLimit,
                                  keys::checksum,
                                  keys::serverChecksum,
                                  keys::checksumResult,
                                  keys::computedChecksum};
    return list;
}

}  // namespace

void UserSettings::set(const QString& key, const QVariant& newValue) {
    if (!newValue.isValid()) {
        remove(key);
        return;
    }
    if (QVariant* const known = find(key)) {
        *known = newValue;
    } else {
        values_.reserve(values_.size() + 1);
        values_.emplace_back(key, newValue);
    }
    didChange();
}

QVariant* UserSettings::find(const QString& key) {
    const auto found = std::find_if(values_.begin(), values_.end(),
                                    [&key](const auto& entry) { return entry.first == key; });
    return found == values_.end() ? nullptr : &found->second;
}

const QVariant* UserSettings::find(const QString& key) const {
    return const_cast<UserSettings*>(this)->find(key);
}

void UserSettings::remove(const QString& key) {
    std::erase_if(values_, [&key](const auto& entry) { return entry.first == key; });
    didChange();
}

void UserSettings::didChange() {
    static quint64 lastRevision = 0;
    revision_ = ++lastRevision;
}

QVariantMap UserSettings::archive(const QString& urlString, bool paused) const {
    QVariantMap result{{keys::url, urlString}, {keys::paused, paused}};
    for (const QString& key : keptKeys()) {
        if (const QVariant* found = find(key))
            result.insert(key, *found);
    }
    return result;
}

void UserSettings::restore(const QVariantMap& archive) {
    for (const QString& key : keptKeys() + QStringList{keys::statusCode}) {
        if (const auto found = archive.constFind(key); found != archive.cend())
            set(key, *found);
    }
}

}  // namespace engine
