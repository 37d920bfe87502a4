#include "app/queue/orphaned_containers.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSet>
#include <algorithm>

#include "app/queue/restored_download.h"
#include "engine/lifecycle/kept_aside.h"
#include "engine/record/user_settings.h"
#include "engine/settings.h"
#include "links/paths/path_components.h"
#include "platform/base/log.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

namespace app {

namespace keys = engine::keys;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 maximumFileSize = 64 << 20;

/// The address and the very moment at which the user gave it. Empty: nothing tells it apart.
QByteArray identity(const QVariantMap& archive) {
    const QByteArray date = archive.value(keys::date).toByteArray();
    return date.isEmpty() ? QByteArray() : archive.value(keys::url).toString().toUtf8() + date;
}

constexpr auto metadataName = "Archive.orlopinfo";

QString dataPath(const OrphanedContainers::Container& container) {
    const QString name =
        links::lastPathComponent(container.archive.value(keys::resumePath).toString());
    return name.isEmpty() ? QString() : links::stringByAppendingPathComponent(container.path, name);
}

/// With what a download leaves there that had only just begun.
bool removeIfEmpty(const QString& container) {
    const QFileInfoList entries = QDir(container).entryInfoList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    const bool isEmpty = std::all_of(entries.begin(), entries.end(), [](const QFileInfo& entry) {
        return entry.isFile() && !entry.isSymLink() &&
               (entry.size() == 0 || entry.fileName() == QLatin1StringView(metadataName));
    });
    if (!isEmpty) {
        return false;
    }
    for (const QFileInfo& entry : entries) {
        QFile::remove(entry.filePath());
    }
    platform::log(u"removing the empty folder of a download: %1"_s.arg(container));
    return QDir().rmdir(container);
}

}  // namespace

QStringList foldersOfDownloads(const platform::UserDefaults& defaults,
                               const QVariantList& specialCases) {
    QStringList folders{defaults.folderPathForKey(engine::settings::downloadsFolder.name(),
                                                  platform::downloadsUserFolder())};
    for (const QVariant& rule : specialCases) {
        folders.append(rule.toMap().value(u"Downloads Folder"_s).toString());
    }
    folders.removeAll({});
    for (QString& folder : folders) {
        folder = platform::expandTilde(folder);
    }
    folders.removeDuplicates();
    return folders;
}

QVariantMap OrphanedContainers::completed(const QVariantMap& archive) {
    if (archive.contains(keys::responseURL)) {
        return archive;
    }
    if (!archives_) {
        read();
    }
    QVariantMap completed = archives_->take(identity(archive));
    if (completed.isEmpty()) {
        return archive;
    }
    completed.insert(keys::paused, archive.value(keys::paused));
    return completed;
}

std::vector<OrphanedContainers::Container> OrphanedContainers::unclaimed(
    const engine::Downloads& downloads) {
    if (!archives_) {
        read();
    }
    if (containers_.empty()) {
        return {};
    }
    QSet<QString> folders;
    QSet<QByteArray> identities;
    for (const engine::DownloadPtr& download : downloads) {
        for (const QString& partial :
             {download->intermediateDownloadTargetPath(), engine::partialPathAside(*download)}) {
            folders.insert(QFileInfo(QFileInfo(partial).path()).canonicalFilePath());
        }
        identities.insert(identity({{keys::url, download->URLString()},
                                    {keys::date, download->userSettings().value(keys::date)}}));
    }
    std::vector<Container> found;
    for (const Container& container : containers_) {
        if (folders.contains(QFileInfo(container.path).canonicalFilePath()) ||
            removeIfEmpty(container.path)) {
            continue;
        }
        const QByteArray key = identity(container.archive);
        if (!key.isEmpty() && !identities.contains(key) &&
            platform::pathExists(dataPath(container))) {
            identities.insert(key);
            found.push_back(container);
        }
    }
    return found;
}

void OrphanedContainers::read() {
    archives_.emplace();
    for (const QString& folder : folders_) {
        for (QDirIterator entries(folder, {u"*.orlop"_s}, QDir::Dirs | QDir::NoSymLinks);
             entries.hasNext();) {
            const QString container = entries.next();
            const platform::FileContents contents = platform::readFile(
                links::stringByAppendingPathComponent(container, QLatin1StringView(metadataName)),
                maximumFileSize);
            const QVariantMap archive =
                migratedArchive(platform::readPropertyList(contents.data).value.toMap(), container);
            containers_.push_back({container, archive});
            if (const QByteArray key = identity(archive); !key.isEmpty()) {
                archives_->insert(key, archive);
            }
        }
    }
}

}  // namespace app
