#include "engine/lifecycle/kept_aside.h"

#include "engine/lifecycle/download.h"
#include "engine/paths/download_paths.h"
#include "engine/record/known_file.h"
#include "platform/base/log.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

/// What belongs to partial data and not to its download.
QStringList keysOfPartialData() {
    return knownFileKeys() +
           QStringList{keys::responseURL, keys::accelerationWorkers, keys::keptBytes};
}

}  // namespace

void putPartialDataAside(DQDownload& download) {
    UserSettings& settings = download.userSettings();
    const QString path = download.intermediateDownloadTargetPath();
    if (settings.contains(keys::keptAside) || path.isEmpty()) {
        download.paths().discardPartialData();
    } else {
        QVariantMap aside{{keys::resumePath, platform::abbreviateWithTilde(path)}};
        for (const QString& key : keysOfPartialData()) {
            if (settings.contains(key))
                aside.insert(key, settings.value(key));
        }
        settings.set(keys::keptAside, aside);
        download.paths().setIntermediateDownloadTargetPath({});
        platform::log(u"%1 begins anew; what had come stays until that is complete"_s.arg(
            download.description()));
    }
    for (const QString& key : keysOfPartialData())
        settings.remove(key);
}

void takePartialDataBack(DQDownload& download) {
    UserSettings& settings = download.userSettings();
    if (!settings.contains(keys::keptAside) || download.paths().hasIntermediateDownloadTargetPath())
        return;
    const QString path = partialPathAside(download);
    const QVariantMap aside = settings.value(keys::keptAside).toMap();
    settings.remove(keys::keptAside);
    download.setIntermediateDownloadTargetPath(path);
    for (const QString& key : keysOfPartialData())
        settings.set(key, aside.value(key));
}

void dropPartialDataAside(DQDownload& download) {
    const QString path = partialPathAside(download);
    download.userSettings().remove(keys::keptAside);
    download.paths().discardInBackground(path);
}

KnownFile knownFileAside(const DownloadRecord& download) {
    UserSettings settings;
    settings.restore(download.userSettings().value(keys::keptAside).toMap());
    return knownFile(settings);
}

QString partialPathAside(const DownloadRecord& download) {
    const QVariantMap aside = download.userSettings().value(keys::keptAside).toMap();
    return platform::expandTilde(aside.value(keys::resumePath).toString());
}

}  // namespace engine
