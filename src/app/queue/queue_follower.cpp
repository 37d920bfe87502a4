#include "app/queue/queue_follower.h"

#include <utility>

#include "app/commands/bulk_commands.h"
#include "app/failures/failure_sentence.h"
#include "app/intake/intake.h"
#include "app/main_controller.h"
#include "app/queue/batch_progress.h"
#include "app/queue/list_presenter.h"
#include "app/queue/queue_archive.h"
#include "app/queue/removed_downloads.h"
#include "app/rows/rows.h"
#include "app/settings.h"
#include "engine/settings.h"
#include "links/text/localization.h"
#include "links/text/typography.h"
#include "platform/base/log.h"
#include "platform/files/files.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

/// So many rows at once vanish without an animation.
constexpr std::size_t massRemoval = 11;
constexpr platform::Seconds redrawDelay = 0.2;

/// Whether a kill right behind it must not undo it.
bool isForTheNextStart(engine::StatusCause cause) {
    using engine::StatusCause;
    return cause == StatusCause::Queued || cause == StatusCause::Paused ||
           cause == StatusCause::PausedByUser || cause == StatusCause::Interrupted;
}

}  // namespace

QueueFollower::QueueFollower(const Surroundings& surroundings)
    : around_(surroundings),
      missingVolumes_(platform::pathExists),
      missingVolumeAlert_(surroundings.loop, [this](const QString& text) {
          Q_EMIT around_.controller.volumesMissing(text);
      }) {}

void QueueFollower::queueDidChange() {
    around_.view.invalidate();
    Q_EMIT around_.controller.queueChanged();
}

void QueueFollower::downloadDidLeave(const engine::DQDownload& download) {
    around_.rows.forget(download);
    leaving_.erase(&download);
    interrupted_.erase(&download);
}

void QueueFollower::downloadWasReplaced(const engine::DownloadPtr& former,
                                        const engine::DownloadPtr& replacement) {
    around_.list.selectInPlaceOf(former, replacement);
}

/// What follows from it for others; how it looks follows at the end of a batch for all at once.
void QueueFollower::statusDidChange(const engine::StatusChange& change) {
    using engine::StatusCause;
    // It may leave the queue while it is still at work.
    const engine::DownloadPtr kept = change.download.shared_from_this();
    const bool wasActive = engine::matchesStatusMask(change.before, engine::activeStatuses);
    if (change.after == engine::DQDownloadStatusQueued) {
        around_.batch.invalidateLongTermNumberOfQueuedOrDownloadingDownloads();
    }
    around_.rows.note(change);
    if (change.cause == StatusCause::PausedByUser ||
        (change.cause == StatusCause::Removed && wasActive)) {
        around_.batch.decrementLongTermNumberOfQueuedOrDownloadingDownloads();
    }
    if (change.cause == StatusCause::Interrupted) {
        notifyInterruption(change.download);
    }
    if (change.cause == StatusCause::Removed || change.cause == StatusCause::Added) {
        return;  // Who removes or adds shows the list anew, for many at once.
    }
    isStale_ = isStale_ || around_.queue.isInBatch();
    if (isForTheNextStart(change.cause) && !around_.queue.isInBatch()) {
        around_.archive.write();
    }
    if (engine::matchesStatusMask(change.after, engine::finishedStatuses)) {
        around_.history->add(change.download);
        reflectEnd(change.download);
    }
    downloadDidChange(change.download);
}

void QueueFollower::downloadDidChange(engine::DQDownload& download) {
    const engine::DownloadPtr kept = download.shared_from_this();
    if (download.status() == engine::DQDownloadStatusDownloading) {
        if (!interrupted_.empty() && download.figures().downloaded > 0) {
            interrupted_.erase(&download);
        }
        around_.archive.writeIfBegun(download);
        around_.rows.noteProgress(download);
    }
    Q_EMIT around_.controller.downloadChanged(kept);
    if (around_.queue.isInBatch()) {
        return;
    }
    const bool isListUpToDate = around_.list.reflectChange(download);
    around_.controller.updateStatusAndForceUpdateApplicationImage(false);
    if (!isListUpToDate) {
        around_.frontEnd.list.setNeedsDisplayAfterDelay(redrawDelay);
    }
}

/// Once, until something of the file has come again: what is resumed by itself may fail many times.
void QueueFollower::notifyInterruption(engine::DQDownload& download) {
    const platform::Error* const error = download.lastError();
    if (!error || !interrupted_.insert(&download).second) {
        return;
    }
    around_.status->sendUserNotification(
        u"Download Interrupted"_s, links::localized("Download Interrupted"),
        download.displayName() + links::spacedDashString() + failureSentence(*error, {}), false);
}

/// They outlast the row.
std::vector<platform::UserNotification::Action> QueueFollower::fileActions(
    engine::DQDownload& download) {
    const auto action = [this, kept = download.shared_from_this()](
                            const QString& key, const QString& title,
                            void (RowActions::*perform)(engine::DQDownload&) const) {
        return platform::UserNotification::Action{
            key, title, [this, kept, perform] { (around_.rows.actions().*perform)(*kept); }};
    };
    return {action(u"open"_s, links::localized("Open"), &RowActions::open),
            action(u"reveal"_s, links::localized("Show in Folder"), &RowActions::reveal)};
}

void QueueFollower::reflectEnd(engine::DQDownload& download) {
    constexpr platform::Seconds vanishInterval = 3;
    const bool isDone = download.status() == engine::DQDownloadStatusDone;
    if (isDone) {
        around_.status->sendUserNotificationWithActions(
            u"Download Complete"_s, links::localized("Download Complete"), download.displayName(),
            fileActions(download));
    } else {
        around_.status->sendUserNotification(u"Download Failed"_s,
                                             links::localized("Download Failed"),
                                             download.displayName(), false);
    }
    around_.allDone._mayTriggerQuitOnAllDone = true;
    const platform::Setting<bool>& autoClear =
        isDone ? settings::autoClearSuccesses : settings::autoClearLemons;
    if (around_.defaults.get(autoClear) && !download.holdsPartialData()) {
        vanish(download, vanishInterval);
    }
    around_.archive.write();
    around_.status->playFeedback();
    Q_EMIT around_.controller.downloadEnded(download.shared_from_this());
}

void QueueFollower::downloadWasRemoved(engine::DQDownload& download) {
    constexpr platform::Seconds vanishInterval = 0.1;
    const engine::DownloadPtr kept = download.shared_from_this();
    disableAllDoneNotificationForDownload(download);
    around_.allDone._mayTriggerQuitOnAllDone = true;
    if (download.isWithdrawn()) {
        around_.removed.note(kept);
    }
    if (around_.queue.isInBatch()) {
        leaving_.insert(&download);
        isStale_ = true;
        return;
    }
    around_.removed.endStep();
    vanish(download, vanishInterval);
    around_.archive.write();
    downloadDidChange(download);
}

void QueueFollower::batchDidEnd() {
    around_.removed.endStep();
    removeLeavingDownloads();
    if (std::exchange(isStale_, false)) {
        around_.archive.write();
        around_.controller.updateDownloadListAndStatus();
    }
}

void QueueFollower::removeLeavingDownloads() {
    constexpr platform::Seconds vanishInterval = 0.1;
    const auto leaving = std::exchange(leaving_, {});
    const auto isLeaving = [&](const engine::DQDownload& download) {
        return leaving.contains(&download);
    };
    if (leaving.size() >= massRemoval) {
        around_.queue.removeIf(isLeaving);
        return;
    }
    const Downloads present = around_.queue.downloads();
    for (const engine::DownloadPtr& download : present) {
        if (isLeaving(*download)) {
            vanish(*download, vanishInterval);
        }
    }
}

void QueueFollower::openURLsOfPage(const std::vector<platform::Url>& urls,
                                   const QStringList& pageChain) {
    ScriptArguments arguments;
    arguments.withReferrer = pageChain.value(pageChain.size() - 1);
    arguments.downloadPageChain = pageChain;
    arguments.isFromProgram = true;
    around_.intake.openURLs(urls, arguments);
}

void QueueFollower::volumeIsMissing(engine::DQDownload& download) {
    Q_EMIT around_.controller.volumeMissing(missingVolumes_.note(download.shared_from_this()));
    missingVolumeAlert_.prepareAlertForDownload(download);
}

void QueueFollower::mountsDidChange() {
    const Downloads returned = missingVolumes_.takeReturned();
    if (returned.empty()) {
        return;
    }
    if (around_.defaults.get(engine::settings::autoResume)) {
        queuePaused(around_.queue, returned);
    } else {
        Q_EMIT around_.controller.volumesReturned(returned);
    }
}

void QueueFollower::fileWasNotThrownAway(const QString& path) {
    platform::log(u"cannot move to the Trash: %1"_s.arg(path), platform::LogLevel::Warning);
    around_.frontEnd.feedback.beep();
    Q_EMIT around_.controller.fileNotThrownAway(path);
}

void QueueFollower::vanish(engine::DQDownload& download, platform::Seconds delay) {
    around_.rows.vanishing().vanish(download, around_.frontEnd.list.vanishView(), delay);
}

void QueueFollower::disableAllDoneNotificationForDownload(const engine::DQDownload& download) {
    const qint64 itself =
        engine::matchesStatusMask(download.status(), engine::unfinishedStatuses) ? 1 : 0;
    if (around_.queue.tally().count(engine::unfinishedStatuses) == itself) {
        around_.allDone._mayTriggerAllDoneNotification = false;
    }
}

void QueueFollower::removeDownload(engine::DQDownload& download) {
    if (around_.queue.remove(download)) {
        around_.list.updateDownloadListAndStatusSoon();
    }
}

void QueueFollower::vanishDownloads(const Downloads& downloads) {
    const engine::DownloadQueue::Batch batch(around_.queue);
    for (const engine::DownloadPtr& download : downloads) {
        if (around_.queue.contains(*download)) {
            leaving_.insert(download.get());
            isStale_ = true;
        }
    }
    around_.queue.touchBatch();
}

/// What can still be gone on with stays until the user removes it.
void QueueFollower::clearDownloads(engine::StatusMask mask) {
    Downloads cleared = around_.queue.downloadsMatchingStatusMask(mask);
    std::erase_if(cleared, [](const auto& download) { return download->holdsPartialData(); });
    for (const engine::DownloadPtr& download : cleared) {
        around_.removed.note(download);
    }
    vanishDownloads(cleared);
}

void QueueFollower::undoRemoval() {
    Downloads back;
    {
        const engine::DownloadQueue::Batch batch(around_.queue);
        back = around_.removed.undo();
        isStale_ = true;
        around_.queue.touchBatch();
    }
    around_.controller.selectDownloads(back);
    Q_EMIT around_.controller.downloadsRestored(back);
}

}  // namespace app
