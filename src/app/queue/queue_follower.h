#pragma once

#include <unordered_set>

#include "app/controller_roles.h"
#include "app/front_end.h"
#include "app/queue/download_order.h"
#include "app/queue/missing_volume_alert_controller.h"
#include "app/queue/missing_volumes.h"
#include "engine/queue/download_queue.h"
#include "engine/queue/queue_owner.h"

namespace app {

class BatchProgress;
class DQMainController;
class Intake;
class ListPresenter;
class QueueArchive;
class QueueView;
class RemovedDownloads;
class Rows;

/// What follows when downloads change, end, leave or wait for a volume: rows, list, history, the
/// queue's file, notifications and the signals of the controller. Main thread.
class QueueFollower final : public engine::QueueOwner {
public:
    /// All of it outlives the follower, and need not be made before the first download is.
    struct Surroundings {
        DQMainController& controller;
        platform::RunLoop& loop;
        platform::UserDefaults& defaults;
        FrontEnd frontEnd;
        engine::DownloadQueue& queue;
        Rows& rows;
        QueueView& view;
        ListPresenter& list;
        QueueArchive& archive;
        RemovedDownloads& removed;
        Intake& intake;
        BatchProgress& batch;
        AllDone& allDone;
        StatusReporter*& status;
        HistoryKeeper*& history;
    };
    explicit QueueFollower(const Surroundings& surroundings);

    /// The row's own way out.
    void removeDownload(engine::DQDownload& download);
    /// Takes them out of the queue once their rows have vanished.
    void vanishDownloads(const Downloads& downloads);
    /// All of these statuses but what can still be gone on with, which stays until the user removes
    /// it.
    void clearDownloads(engine::StatusMask mask);
    /// Takes the user's last removal back, and shows what came back.
    void undoRemoval();
    /// Volumes may have come back.
    void mountsDidChange();

private:
    void queueDidChange() override;
    void downloadDidLeave(const engine::DQDownload& download) override;
    void downloadWasReplaced(const engine::DownloadPtr& former,
                             const engine::DownloadPtr& replacement) override;
    void statusDidChange(const engine::StatusChange& change) override;
    void downloadDidChange(engine::DQDownload& download) override;
    void downloadWasRemoved(engine::DQDownload& download) override;
    void batchDidEnd() override;
    void openURLsOfPage(const std::vector<platform::Url>& urls,
                        const QStringList& pageChain) override;
    void volumeIsMissing(engine::DQDownload& download) override;
    void fileWasNotThrownAway(const QString& path) override;

    void notifyInterruption(engine::DQDownload& download);
    [[nodiscard]] std::vector<platform::UserNotification::Action> fileActions(
        engine::DQDownload& download);
    void reflectEnd(engine::DQDownload& download);
    void removeLeavingDownloads();
    void vanish(engine::DQDownload& download, platform::Seconds delay);
    void disableAllDoneNotificationForDownload(const engine::DQDownload& download);

    const Surroundings around_;
    /// What a batch has removed.
    std::unordered_set<const engine::DQDownload*> leaving_;
    /// The user was told so, and nothing has come since.
    std::unordered_set<const engine::DQDownload*> interrupted_;
    /// A batch has changed more than it has added.
    bool isStale_ = false;
    MissingVolumes missingVolumes_;
    DQMissingVolumeAlertController missingVolumeAlert_;
};

}  // namespace app
