#include "app/queue/restored_download.h"

#include "app/settings.h"
#include "engine/record/user_settings.h"
#include "links/paths/path_components.h"
#include "links/paths/path_rules.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/files/files.h"

namespace app {

namespace keys = engine::keys;
using namespace Qt::Literals::StringLiterals;
using links::stringByAppendingPathComponent;
using links::stringByDeletingLastPathComponent;

namespace {

QString resumePath(const QVariantMap& archive) {
    return platform::expandTilde(archive.value(keys::resumePath).toString());
}

/// Leads the folder or file that was chosen for the download to where its container is now, if
/// the partial file lay there. The stored text is compared as it is: one with a tilde does not
/// lead anywhere else.
void adaptTarget(QVariantMap& archive, const QString& oldResumePath, const QString& container) {
    const QString parent = stringByDeletingLastPathComponent(container);
    if (const QString folder = archive.value(keys::downloadFolder).toString();
        !folder.isEmpty() && oldResumePath.startsWith(folder) && !parent.isEmpty()) {
        archive[keys::downloadFolder] = parent;
        platform::log(links::filledFormat(u"- adapted download folder: %@"_s, {parent}));
    }
    const QString file = archive.value(keys::downloadFile).toString();
    const QString name = links::lastPathComponent(file);
    const QString folder = stringByDeletingLastPathComponent(file);
    if (!name.isEmpty() && !folder.isEmpty() && oldResumePath.startsWith(folder)) {
        const QString adapted = stringByAppendingPathComponent(parent, name);
        archive[keys::downloadFile] = adapted;
        platform::log(links::filledFormat(u"- adapted download file: %@"_s, {adapted}));
    }
}

/// Anybody may have written what a container says of itself: it leads to nothing but its own data,
/// for partial data is written to and deleted. Empty: the archive has none, or not there.
QString resumePathIn(const QString& container, const QVariantMap& archive) {
    const QString path = resumePath(archive);
    const QString folder = stringByDeletingLastPathComponent(path);
    if (path.isEmpty() || links::isEqualToPath(folder, container) ||
        platform::isSameFile(folder, container)) {
        return path;
    }
    platform::log(u"this is not the data of <%1>: %2"_s.arg(container, path));
    return {};
}

}  // namespace

QVariantMap migratedArchive(const QVariantMap& archive, const QString& externalContainerPath) {
    const QString oldPath = resumePath(archive);
    if (externalContainerPath.isEmpty() || oldPath.isEmpty()) {
        return archive;
    }
    const QString newPath =
        stringByAppendingPathComponent(externalContainerPath, links::lastPathComponent(oldPath));
    if (links::isEqualToPath(newPath, oldPath) || !platform::pathExists(newPath)) {
        return archive;
    }
    platform::log(links::filledFormat(
        u"<%@>: updating primary intermediate download file\n\tfrom: %@\n\tto: %@"_s,
        {archive.value(keys::url).toString(), oldPath, newPath}));
    QVariantMap migrated = archive;
    migrated[keys::resumePath] = platform::abbreviateWithTilde(newPath);
    adaptTarget(migrated, oldPath, externalContainerPath);
    return migrated;
}

bool isMovedDataOf(const engine::DQDownload& download, const QVariantMap& archive) {
    const QString& path = download.intermediateDownloadTargetPath();
    if (download.status() == engine::DQDownloadStatusDone ||
        archive.value(keys::url).toString() != download.URLString() || platform::pathExists(path)) {
        return false;
    }
    const QByteArray date = archive.value(keys::date).toByteArray();
    return (!date.isEmpty() && date == download.userSettings().value(keys::date).toByteArray()) ||
           (!path.isEmpty() && path == resumePath(archive));
}

bool adoptMovedData(engine::DQDownload& download, const QVariantMap& archive,
                    const QString& container) {
    const QVariantMap own = download.userSettingsArchiveWithPausedStatus(true, false);
    QVariantMap migrated =
        migratedArchive(own.contains(keys::resumePath) ? own : archive, container);
    migrated.remove(keys::keptAside);
    const QString path = resumePathIn(container, migrated);
    if (!platform::pathExists(path)) {
        return false;
    }
    download.setIntermediateDownloadTargetPath(path);
    download.userSettingsFromArchive(migrated);
    return true;
}

engine::DownloadPtr addDownloadFromArchive(engine::DownloadQueue& queue,
                                           const platform::UserDefaults& defaults,
                                           const QVariantMap& archive,
                                           const QString& externalContainerPath) {
    const QVariant address = archive.value(keys::url);
    if (address.userType() != QMetaType::QString) {
        return nullptr;
    }
    QVariantMap migrated = migratedArchive(archive, externalContainerPath);
    if (!externalContainerPath.isEmpty()) {
        // Anybody may have written it, and what is aside is deleted in the end.
        migrated.remove(keys::keptAside);
        migrated.remove(keys::failure);
        migrated.remove(keys::attempts);
    }
    const bool isQueued =
        !migrated.value(keys::paused).toBool() && defaults.get(settings::autoStart);
    return queue.add(platform::Url::parse(address.toString()), isQueued,
                     [&](engine::DQDownload& download) {
                         const QString path = externalContainerPath.isEmpty()
                                                  ? resumePath(migrated)
                                                  : resumePathIn(externalContainerPath, migrated);
                         if (!path.isEmpty()) {
                             download.setIntermediateDownloadTargetPath(path);
                         }
                         download.userSettingsFromArchive(migrated);
                         download.invalidateDate(true);
                     });
}

}  // namespace app
