#include "app/queue/state_filter.h"

#include "engine/record/user_settings.h"
#include "links/paths/path_components.h"
#include "platform/files/files.h"

namespace app {

RowState rowState(const engine::DQDownload& download) {
    switch (download.status()) {
        case engine::DQDownloadStatusDownloading:
            return RowState::Active;
        case engine::DQDownloadStatusDone:
            return download.isWrongFile() ? RowState::Failed : RowState::Done;
        case engine::DQDownloadStatusAborted:
            return RowState::Failed;
        case engine::DQDownloadStatusPaused:
        case engine::DQDownloadStatusQueued:
            break;
    }
    return download.isInterrupted() && download.status() == engine::DQDownloadStatusPaused
               ? RowState::Failed
               : RowState::Waiting;
}

QString rowFolder(const engine::DQDownload& download) {
    const auto parent = [](const QString& path) {
        return links::stringByDeletingLastPathComponent(path);
    };
    if (const QString file = download.path(); !file.isEmpty())
        return parent(file);
    if (const QString container = download.downloadContainerPath(); !container.isEmpty())
        return parent(container);
    const engine::UserSettings& settings = download.userSettings();
    const QString file = settings.string(engine::keys::downloadFile);
    return platform::expandTilde(file.isEmpty() ? settings.string(engine::keys::downloadFolder)
                                                : parent(file));
}

bool StateFilter::matches(const engine::DQDownload& download) const {
    return (!state || rowState(download) == *state) &&
           (folder.isEmpty() || rowFolder(download) == folder);
}

StateCounts stateCounts(const engine::Downloads& downloads) {
    StateCounts counts;
    for (const engine::DownloadPtr& download : downloads) {
        ++counts.states.at(static_cast<std::size_t>(rowState(*download)));
        if (const QString folder = rowFolder(*download); !folder.isEmpty())
            ++counts.folders[folder];
    }
    return counts;
}

}  // namespace app
