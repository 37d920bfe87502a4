#include "engine/paths/download_paths.h"

#include <sys/stat.h>
#include <QFile>

#include <cerrno>
#include <utility>

#include "engine/context.h"
#include "engine/paths/download_folder.h"
#include "engine/paths/file_access.h"
#include "engine/paths/intermediate_files.h"
#include "engine/paths/metadata_file.h"
#include "engine/paths/support_folder.h"
#include "engine/record/download_record.h"
#include "engine/settings.h"
#include "links/names/safe_file_name.h"
#include "links/paths/available_path.h"
#include "links/paths/folders.h"
#include "links/paths/path_components.h"
#include "platform/base/log.h"
#include "platform/base/user_defaults.h"
#include "platform/files/disks.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

constexpr mode_t newFolderMode = 0777;

QString partialFileName(const DownloadRecord& download) {
    return links::safeFileName(download.name(), links::partialFileSuffixBytes);
}

void removeCookies(QVariantMap& archive) {
    QVariantMap request = archive.value(keys::request).toMap();
    for (const QString& key : {keys::requestPartialHeaders, keys::requestAllHeaders}) {
        QVariantMap headers = request.value(key).toMap();
        const auto isCookie = [](const auto& header) {
            return header.key().compare(u"Cookie"_s, Qt::CaseInsensitive) == 0;
        };
        if (headers.removeIf(isCookie) > 0)
            request[key] = headers;
    }
    if (!request.isEmpty())
        archive[keys::request] = request;
}

}  // namespace

DownloadPaths::DownloadPaths(DownloadRecord& download) : download_(download) {}

DownloadPaths::~DownloadPaths() = default;

QString DownloadPaths::reachedFolder(const QString& folder) const {
    return download_.context().fileAccess.confirmDownloadAccess(folder);
}

bool DownloadPaths::unlockDownloadFolder() {
    return !download_.context()
                .fileAccess
                .confirmDownloadAccess(downloadBasePath(download_), FileAccess::Asking::IfNeeded)
                .isEmpty();
}

void DownloadPaths::confirmAccessToPartialData() {
    const QString container = downloadContainerPath();
    const QString folder = links::stringByDeletingLastPathComponent(
        container.isEmpty() ? _intermediateDownloadTargetPath : container);
    if (hasIntermediateDownloadTargetPath() && reachedFolder(folder).isEmpty())
        platform::log(u"where did my write access go?"_s);
}

QString DownloadPaths::chooseIntermediateDownloadTargetPath() {
    if (hasIntermediateDownloadTargetPath()) {
        confirmAccessToPartialData();
        return _intermediateDownloadTargetPath;
    }
    const auto [folder, isNew] = intermediateFolder();
    const QString path = links::stringByAppendingPathComponent(folder, partialFileName(download_));
    _intermediateDownloadTargetPath =
        isNew ? path : links::availablePath(path, links::partialFileSuffixBytes);
    return _intermediateDownloadTargetPath;
}

DownloadPaths::Folder DownloadPaths::intermediateFolder() {
    if (download_.context().defaults.get(settings::intermediatesLocation) > 0) {
        const QString folder = reachedFolder(downloadBasePath(download_));
        if (!folder.isEmpty()) {
            if (const QString container = newContainer(folder); !container.isEmpty())
                return {container, true};
        }
    }
    return {intermediateDownloadBasePath(download_.context().environment), false};
}

/// Only a folder that this call made is taken: one that is there already belongs to another
/// download, or was planted.
QString DownloadPaths::newContainer(const QString& folder) {
    constexpr int attempts = 8;
    const QString wanted = links::stringByAppendingPathExtension(
        links::stringByAppendingPathComponent(folder, partialFileName(download_)), u"orlop"_s);
    QString container = wanted;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (::mkdir(QFile::encodeName(container).constData(), newFolderMode) == 0)
            return container;
        if (errno != EEXIST)
            break;
        container = links::availablePath(wanted);
    }
    return {};
}

void DownloadPaths::discardPartialData() {
    if (!hasIntermediateDownloadTargetPath())
        return;
    const QString path = std::exchange(_intermediateDownloadTargetPath, {});
    discard(path, [path] { removePartialFiles(path); });
}

/// What is just being written into the container goes first. If somebody has taken the container
/// away there is nothing to remove, and a new one may come to the same path meanwhile.
void DownloadPaths::discard(const QString& path, std::function<void()> remove) const {
    if (!platform::pathExists(links::stringByDeletingLastPathComponent(path)))
        remove = [] {};
    if (metadata_)
        metadata_->discard(std::move(remove));
    else
        remove();
}

void DownloadPaths::discardPartialDataInBackground() {
    discardInBackground(std::exchange(_intermediateDownloadTargetPath, {}));
}

void DownloadPaths::discardInBackground(const QString& path) const {
    if (path.isEmpty())
        return;
    platform::Disk& disk = download_.context().disks.holding(path);
    discard(path, [&disk, path] { disk.run([path] { removePartialFiles(path); }); });
}

QString DownloadPaths::downloadContainerPath() const {
    const QString folder =
        links::stringByDeletingLastPathComponent(_intermediateDownloadTargetPath);
    return isDownloadContainer(folder) ? folder : QString();
}

QVariantMap DownloadPaths::archive(bool paused) const {
    QVariantMap archive = download_.userSettings().archive(download_.URLString(), paused);
    if (download_.context().defaults.get(settings::privateDownloading))
        removeCookies(archive);
    if (archive.contains(keys::responseURL) && hasIntermediateDownloadTargetPath())
        archive.insert(keys::resumePath,
                       platform::abbreviateWithTilde(_intermediateDownloadTargetPath));
    return archive;
}

void DownloadPaths::writeMetadata(const QVariantMap& archive) {
    const QString container = downloadContainerPath();
    if (container.isEmpty())
        return;
    if (!metadata_)
        metadata_ = std::make_shared<MetadataFile>();
    metadata_->write(download_.context().disks, container, archive);
}

void DownloadPaths::writeFirstMetadata(const QVariantMap& archive) const {
    if (const QString container = downloadContainerPath(); !container.isEmpty())
        MetadataFile::writeAtOnce(container, archive);
}

QString DownloadPaths::finalDownloadTargetPath() {
    const QString chosen =
        platform::expandTilde(download_.userSettings().string(keys::downloadFile));
    const QString chosenFolder = links::stringByDeletingLastPathComponent(chosen);
    if (!chosenFolder.isEmpty() && links::checkFolderPathAndCreateIfNecessary(chosenFolder)) {
        if (const QString folder = reachedFolder(chosenFolder); !folder.isEmpty())
            return links::stringByAppendingPathComponent(folder, links::lastPathComponent(chosen));
    }
    const QString folder = reachedFolder(downloadBasePath(download_));
    if (folder.isEmpty())
        return {};
    return links::availablePath(
        links::stringByAppendingPathComponent(folder, links::safeFileName(download_.name())));
}

}  // namespace engine
