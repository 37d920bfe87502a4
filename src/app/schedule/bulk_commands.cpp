#include "app/schedule/bulk_commands.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

Alert cancelAlert() {
    return {Alert::Kind::CancelDownloads, u"Cancel downloads?"_s,
            u"Are you sure you want to cancel your downloads? All temporary files will be "
            "deleted."_s,
            u"Cancel downloads"_s, u"Keep downloading"_s};
}

}  // namespace

BulkCommands::BulkCommands(ListPresenter& list, DownloadListView& view, Questions& questions)
    : list_(list), view_(view), questions_(questions) {}

void BulkCommands::queueDownloads(Downloads downloads) {
    for (const engine::DownloadPtr& download : downloads) {
        download->addToQueue();
    }
    if (!downloads.empty()) {
        view_.setNeedsDisplay();
    }
}

void BulkCommands::pauseDownloads(Downloads downloads) {
    for (const engine::DownloadPtr& download : downloads) {
        download->pause();
    }
    if (!downloads.empty()) {
        view_.setNeedsDisplay();
    }
}

void BulkCommands::queuePaused() {
    queueDownloads(list_.contextDownloads());
}

void BulkCommands::pauseQueued() {
    pauseDownloads(context(engine::DQDownloadStatusQueued));
}

void BulkCommands::pauseAll() {
    pauseDownloads(context(engine::activeStatuses));
}

void BulkCommands::queueOrPause(int segment) {
    if (segment == 1) {
        pauseQueued();
    } else {
        queuePaused();
    }
}

void BulkCommands::cancelAll(bool asks) {
    const Downloads downloads = list_.contextDownloads();
    if (downloads.empty() || (asks && !questions_.confirm(cancelAlert()))) {
        return;
    }
    for (const engine::DownloadPtr& download : downloads) {
        download->removeAndMoveToTrashIfDone(false);
    }
}

bool BulkCommands::canQueuePaused() {
    return hasContext(engine::DQDownloadStatusPaused);
}

bool BulkCommands::canPauseQueued() {
    return hasContext(engine::DQDownloadStatusQueued);
}

bool BulkCommands::canPauseAll() {
    return hasContext(engine::activeStatuses);
}

bool BulkCommands::canCancelAll() {
    return hasContext(engine::unfinishedStatuses);
}

Downloads BulkCommands::context(engine::StatusMask mask) {
    return downloadsFromCollectionMatchingStatusMask(list_.contextDownloads(), mask);
}

bool BulkCommands::hasContext(engine::StatusMask mask) {
    return anyDownloadFromCollectionMatchesStatusMask(list_.contextDownloads(), mask);
}

}  // namespace app
