#include "engine/paths/download_paths.h"

#include <sys/stat.h>
#include <QFile>

#include <cerrno>

#include "engine/paths/download_folder.h"
#include "engine/paths/file_access.h"
#include "engine/paths/intermediate_files.h"
#include "engine/paths/support_folder.h"
#include "engine/record/download.h"
#include "engine/record/user_settings.h"
#include "engine/settings.h"
#include "links/names/safe_file_name.h"
#include "links/paths/available_path.h"
#include "links/paths/path_components.h"
#include "platform/base/log.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

constexpr mode_t newFolderMode = 0777;

QString partialFileName(const DQDownload& download) {
    return links::safeFileName(download.name(), links::partialFileSuffixBytes);
}

}  // namespace

QString DownloadPaths::intermediateDownloadTargetPath(bool createIfNecessary, bool confirmAccess) {
    if (hasIntermediateDownloadTargetPath()) {
        if (confirmAccess) {
            const QString container = downloadContainerPath();
            const QString folder = links::stringByDeletingLastPathComponent(
                container.isEmpty() ? _intermediateDownloadTargetPath : container);
            if (!confirmDownloadAccess(folder))
                platform::log(u"where did my write access go?"_s);
        }
        return _intermediateDownloadTargetPath;
    }
    if (createIfNecessary) {
        const auto [folder, isNew] = intermediateFolder();
        const QString path =
            links::stringByAppendingPathComponent(folder, partialFileName(download_));
        _intermediateDownloadTargetPath =
            isNew ? path : links::availablePath(path, links::partialFileSuffixBytes);
    }
    return _intermediateDownloadTargetPath;
}

DownloadPaths::Folder DownloadPaths::intermediateFolder() {
    if (platform::standardDefaults().get(settings::intermediatesLocation) > 0) {
        const QString folder = downloadBasePath(download_);
        if (confirmDownloadAccess(folder)) {
            if (const QString container = newContainer(folder); !container.isEmpty())
                return {container, true};
        }
    }
    return {intermediateDownloadBasePath(), false};
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
    removePartialFiles(_intermediateDownloadTargetPath);
    _intermediateDownloadTargetPath.clear();
    writtenMetadata_.clear();
}

QString DownloadPaths::downloadContainerPath() const {
    const QString folder =
        links::stringByDeletingLastPathComponent(_intermediateDownloadTargetPath);
    return isDownloadContainer(folder) ? folder : QString();
}

void DownloadPaths::writeMetadata(const QVariantMap& archive) {
    const QString container = downloadContainerPath();
    if (container.isEmpty() || archive == writtenMetadata_)
        return;
    const auto error = platform::writeFileAtomically(
        links::stringByAppendingPathComponent(container, u"Archive.orlopinfo"_s),
        platform::writePropertyList(archive));
    writtenMetadata_ = error ? QVariantMap() : archive;
}

QString DownloadPaths::finalDownloadTargetPath() {
    const QString chosen =
        platform::expandTilde(download_.userSettings().string(keys::downloadFile));
    if (confirmDownloadAccess(links::stringByDeletingLastPathComponent(chosen)))
        return chosen;
    const QString folder = downloadBasePath(download_);
    if (!confirmDownloadAccess(folder))
        return {};
    return links::availablePath(
        links::stringByAppendingPathComponent(folder, links::safeFileName(download_.name())));
}

}  // namespace engine
