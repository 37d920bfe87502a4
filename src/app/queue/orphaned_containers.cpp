#include "app/queue/orphaned_containers.h"

#include <QDirIterator>

#include "app/queue/restored_download.h"
#include "engine/record/user_settings.h"
#include "engine/settings.h"
#include "links/paths/path_components.h"
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

void OrphanedContainers::read() {
    archives_.emplace();
    for (const QString& folder : folders_) {
        for (QDirIterator entries(folder, {u"*.orlop"_s}, QDir::Dirs | QDir::NoSymLinks);
             entries.hasNext();) {
            const QString container = entries.next();
            const platform::FileContents contents = platform::readFile(
                links::stringByAppendingPathComponent(container, u"Archive.orlopinfo"_s),
                maximumFileSize);
            const QVariantMap archive =
                migratedArchive(platform::readPropertyList(contents.data).value.toMap(), container);
            if (const QByteArray key = identity(archive); !key.isEmpty()) {
                archives_->insert(key, archive);
            }
        }
    }
}

}  // namespace app
