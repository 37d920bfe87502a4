#include "app/queue/orphaned_containers.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <algorithm>

#include "app/queue/restored_download.h"
#include "app/rules/folders.h"
#include "engine/lifecycle/kept_aside.h"
#include "engine/paths/intermediate_files.h"
#include "engine/record/user_settings.h"
#include "engine/settings.h"
#include "engine/workers/partial_file_marks.h"
#include "links/paths/path_components.h"
#include "platform/base/log.h"
#include "platform/files/descriptor.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

namespace app {

namespace keys = engine::keys;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 mostBytesOfRecord = 64 << 20;

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

QStringList subfoldersOf(const QStringList& folders) {
    QStringList found;
    for (const QString& folder : folders) {
        for (QDirIterator entries(folder, QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot);
             entries.hasNext();) {
            if (const QString path = entries.next(); !engine::isDownloadContainer(path)) {
                found.append(path);
            }
        }
    }
    return found;
}

/// Where its user wanted it. Empty: nowhere in particular.
QString chosenFolder(const QVariantMap& archive) {
    const QString file = archive.value(keys::downloadFile).toString();
    return platform::expandTilde(file.isEmpty() ? archive.value(keys::downloadFolder).toString()
                                                : links::stringByDeletingLastPathComponent(file));
}

/// What was written of a file before the power failed counts only as far as the disk had it.
bool isWithoutData(const QFileInfo& entry) {
    if (!entry.isFile() || entry.isSymLink()) {
        return false;
    }
    if (entry.fileName() == QLatin1StringView(metadataName)) {
        return true;
    }
    engine::dropUnsyncedTail(entry.filePath());
    return engine::bytesReceivedIn(entry.filePath()) == 0;
}

/// Of the same download, which had put the other's data aside.
bool isSuccessor(const QVariantMap& successor, const QVariantMap& archive) {
    const QString aside =
        successor.value(keys::keptAside).toMap().value(keys::resumePath).toString();
    return !aside.isEmpty() &&
           platform::expandTilde(aside) ==
               platform::expandTilde(archive.value(keys::resumePath).toString());
}

/// With what a download leaves there that had only just begun.
bool removeIfEmpty(const QString& container) {
    platform::TemporaryFile::removeStrays(QFile::encodeName(container));
    const QFileInfoList entries = QDir(container).entryInfoList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    const bool isEmpty = std::all_of(entries.begin(), entries.end(), isWithoutData);
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
    const QStringList folders = generalFolderAndThoseOfRules(defaults, specialCases);
    const bool areSubdivided =
        !defaults.get(engine::settings::subdivisionFormatDefault).isEmpty() ||
        !defaults.get(engine::settings::subdivisionFormatRules).isEmpty();
    return areSubdivided ? folders + subfoldersOf(folders) : folders;
}

QVariantMap OrphanedContainers::completed(const QVariantMap& archive) {
    // One that was answered, but has no data anywhere, had just begun anew.
    if (archive.contains(keys::responseURL) &&
        (archive.contains(keys::resumePath) || archive.contains(keys::keptAside))) {
        return succeeded(archive);
    }
    read();
    if (const QString folder = chosenFolder(archive); !folder.isEmpty()) {
        read(folder);
    }
    QVariantMap completed = archives_.take(identity(archive));
    if (completed.isEmpty()) {
        return archive;
    }
    completed.insert(keys::paused, archive.value(keys::paused));
    return completed;
}

/// A download that had begun anew beside its old data goes on with the new.
QVariantMap OrphanedContainers::succeeded(const QVariantMap& archive) {
    read();
    QVariantMap successor = archives_.value(identity(archive));
    if (!isSuccessor(successor, archive)) {
        return archive;
    }
    successor.insert(keys::paused, archive.value(keys::paused));
    return successor;
}

std::vector<OrphanedContainers::Container> OrphanedContainers::unclaimed(
    const engine::Downloads& downloads) {
    read();
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
        // An attempt that came to nothing, of a download that goes on with another one.
        if (identities.contains(key) && container.archive.contains(keys::keptAside)) {
            engine::removePartialFiles(dataPath(container));
            continue;
        }
        if (!key.isEmpty() && !identities.contains(key) &&
            platform::pathExists(dataPath(container))) {
            identities.insert(key);
            found.push_back(container);
        }
    }
    return found;
}

void OrphanedContainers::read() {
    for (const QString& folder : folders_) {
        read(folder);
    }
}

/// Once.
void OrphanedContainers::read(const QString& folder) {
    if (readFolders_.contains(folder)) {
        return;
    }
    readFolders_.insert(folder);
    platform::TemporaryFile::removeStrays(QFile::encodeName(folder));
    for (QDirIterator entries(folder, {u"*.orlop"_s}, QDir::Dirs | QDir::NoSymLinks);
         entries.hasNext();) {
        const QString container = entries.next();
        const platform::FileContents contents = platform::readFile(
            links::stringByAppendingPathComponent(container, QLatin1StringView(metadataName)),
            mostBytesOfRecord);
        const QVariantMap archive =
            migratedArchive(platform::readPropertyList(contents.data).value.toMap(), container);
        containers_.push_back({container, archive});
        if (const QByteArray key = identity(archive); !key.isEmpty()) {
            archives_.insert(key, archive);
        }
    }
}

}  // namespace app
