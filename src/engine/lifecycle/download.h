#pragma once

#include <QVariant>
#include <memory>
#include <optional>

#include "engine/finishing/download_finisher.h"
#include "engine/lifecycle/download_host.h"
#include "engine/paths/download_paths.h"
#include "engine/record/download_record.h"
#include "engine/transfer/transfer.h"
#include "engine/workers/download_worker_delegate.h"

namespace engine {

class DQDownload;
class SpeedLimit;
struct Activity;
using DownloadPtr = std::shared_ptr<DQDownload>;

/// One download, from the moment its address enters the queue until it is a file on disk or has
/// been given up: state machine and the delegate of its workers.
///
/// The queue makes and owns its records. The work is done by collaborators with files of their
/// own; this class is what the rest of the program sees of them. Main thread.
class DQDownload final : public DownloadRecord,
                         public DQDownloadWorkerDelegate,
                         private FinishingDelegate {
public:
    /// For the queue: `context` and `host` outlive it. It is paused.
    DQDownload(const Context& context, DownloadHost& host, const platform::Url& url);
    ~DQDownload() override;

    [[nodiscard]] DownloadPtr shared_from_this();
    [[nodiscard]] std::shared_ptr<const DQDownload> shared_from_this() const;
    [[nodiscard]] std::weak_ptr<DQDownload> weak_from_this();

    void setURL(const platform::Url& url);

    // What survives a restart.

    /// One element of the queue file. With `writeMetadataToDownloadBundle` also writes what an
    /// .orlop folder needs to be opened by itself, if the partial file lies in one.
    QVariantMap userSettingsArchiveWithPausedStatus(bool paused,
                                                    bool writeMetadataToDownloadBundle);

    // Paths; empty where there is none.

    [[nodiscard]] QString pathToReveal();
    /// The .orlop folder of the partial file.
    [[nodiscard]] QString downloadContainerPath() const { return paths_.downloadContainerPath(); }
    /// For a record that is restored. A path where no partial data of ours can lie is not taken: it
    /// comes from a file that anybody may have written, and partial data is deleted.
    void setIntermediateDownloadTargetPath(const QString& path);
    [[nodiscard]] const QString& intermediateDownloadTargetPath() const {
        return paths_.intermediateDownloadTargetPath();
    }
    [[nodiscard]] QString downloadBasePath() const;
    [[nodiscard]] QString finalDownloadTargetPath() { return paths_.finalDownloadTargetPath(); }

    // Life.

    /// Starts at once, past the queue and its limits.
    void startDownload();
    /// Starts at the address given, or at its own. `extractedFromDownloadPage`: the address (or
    /// none) is what reading a page gave.
    void startDownloadWithURL(const std::optional<platform::Url>& url,
                              bool extractedFromDownloadPage);
    /// Only from paused.
    void addToQueue();
    /// Only from queued or downloading.
    void pause() { stop(StatusCause::Paused); }
    void togglePause();
    void remove() { removeAndMoveToTrashIfDone(false); }
    void removeAndMoveToTrash() { removeAndMoveToTrashIfDone(true); }
    void removeAndMoveToTrashIfDone(bool moveToTrash);
    /// Leaves the queue like `remove`, but with all that has come: whoever keeps it can put it back
    /// after `takeBack`, or has to `giveUpData`.
    void withdraw();
    /// It is wanted again: as it was, what ran or was to go on by itself being queued.
    void takeBack();
    /// Deletes what a withdrawn download has kept, in the background.
    void giveUpData();

    // Checksum.

    /// What its file is to add up to, from the user. Nothing: whatever the server says. An
    /// unfinished one is compared when it is whole; a finished one is read now, in the background,
    /// and `completion` is called when it is known. One that was not what it was to be begins anew
    /// or not when it is retried, by whether this is another checksum.
    void expectChecksum(const std::optional<Checksum>& checksum,
                        std::function<void()> completion = {});
    /// Its file is being read for that.
    [[nodiscard]] bool isVerifying() const;
    /// The file was looked at, and it is another one than expected.
    [[nodiscard]] bool isWrongFile() const {
        return checksumResult(userSettings()) == ChecksumResult::Wrong;
    }

    // Acceleration.

    /// Whether files of this host are fetched over several connections.
    [[nodiscard]] bool accelerates() const;
    /// Turns it the other way for the host.
    void toggleAcceleration();

    // What its workers have achieved; nothing before it is started.

    /// 0 to 1; 0 unless downloading or done.
    [[nodiscard]] double downloadCompletionFraction() const;
    [[nodiscard]] OverallFigures figures() const;
    /// See SpeedMeter. `now`: on the scale that never jumps.
    [[nodiscard]] std::optional<SpeedMeter::Span> speed(platform::Seconds now) const;
    [[nodiscard]] const Transfer::Workers& workers() const;

    // Reports of the workers.

    [[nodiscard]] bool isDebugLogged() const override { return DownloadRecord::isDebugLogged(); }
    [[nodiscard]] QString targetPathForDownloadWorker(
        const DQDownloadWorkerPrototype& worker) override;
    void resetProgressForDownloadWorker(DQDownloadWorkerPrototype& worker) override;
    void downloadWorkerDidReceiveResponse(DQDownloadWorkerPrototype& worker,
                                          const WorkerResponse& response) override;
    void downloadWorkerWillStoreBytes(DQDownloadWorkerPrototype&) override {
        transfer().prepareForFirstBytes();
    }
    void downloadWorkerDidReceiveBytes(DQDownloadWorkerPrototype& worker, qint64 count) override;
    void downloadWorkerDidFail(DQDownloadWorkerPrototype& worker,
                               const platform::Error& error) override;
    void downloadWorkerDidFinish(DQDownloadWorkerPrototype& worker) override;

    /// Whether something lies on disk that a later attempt can go on with.
    [[nodiscard]] bool holdsPartialData() const {
        return paths_.hasIntermediateDownloadTargetPath();
    }

    // For the collaborators of this folder.

    [[nodiscard]] DownloadHost& host() { return host_; }
    [[nodiscard]] DownloadPaths& paths() { return paths_; }
    [[nodiscard]] const DownloadPaths& paths() const { return paths_; }
    [[nodiscard]] Transfer& transfer();
    [[nodiscard]] SpeedLimit& speedLimit();
    [[nodiscard]] DownloadFinisher& finisher();
    [[nodiscard]] bool isGettingDownloadPageSource() const { return _isGettingDownloadPageSource; }
    void setIsGettingDownloadPageSource(bool isGetting) {
        _isGettingDownloadPageSource = isGetting;
    }

    /// The one way from status to status. Who asks has brought everything else to where it then
    /// belongs; the queue, and whoever listens to it, draws all conclusions.
    void changeStatus(DQDownloadStatus after, StatusCause cause);
    /// For a start: at status 4 from here on, with nothing left of an earlier failure.
    void becomeDownloading();
    /// Stops the transfer, and keeps what is worth keeping. Only from queued or downloading.
    void stop(StatusCause cause);
    /// Pauses it with the reason for its rows, and arranges for its resumption as the settings say.
    void interrupt(const platform::Error& error);
    /// The same for what only the user can change: nothing resumes it by itself.
    void interruptUntilResumed(const platform::Error& error);
    /// It could not be started at all.
    void abort();
    /// Gives up all partial data, which is damaged, and queues the download.
    void startOverAfterFailedResume();
    /// Queues the download to begin anew, with its partial data beside the new until that is
    /// complete.
    void startOverBesidePartialData();
    /// What is on disk is all of the file, whose length was not known.
    void finishWithPartialData();
    /// Writes down how much has come, for a row that stops.
    void noteKeptBytes();
    /// Resumes at the address that the download began with, if another one answered last: links
    /// expire, and their origin gives a fresh one. False: there is no other.
    [[nodiscard]] bool askOriginalAgain();
    /// Its server has refused `worker` for now: it goes back into the queue with what it has until
    /// the server may be asked again. `told`: when the server wants to be asked, in seconds. False:
    /// it has been asked often enough since it last sent something.
    [[nodiscard]] bool putOff(const DQDownloadWorkerPrototype& worker,
                              std::optional<platform::Seconds> told);
    /// Whether its server was the last to have had no place for it.
    [[nodiscard]] bool wasRefused() const { return refusals_ > 0; }
    /// Takes the partial data of a record that this new one stands for, and what is known of it.
    void takeOverPartialData(DQDownload& other);
    /// What is arranged for a download that was stopped is not to happen any more.
    void cancelArrangedResume();
    /// It stands still, but goes on by itself later.
    [[nodiscard]] bool isResumeArranged() const;
    /// The queue ends: nothing of it goes on, and nobody is told.
    void abandon();
    /// Stops all workers and resumes with one, from what the first worker has.
    void goOnAlone();

private:
    // What the end of the transfer leads to.

    void didFinishWithFile(const QString& path) override;
    void didFinishWithoutData() override;
    void finishingDidFail(const platform::Error& error) override;
    void verificationDidBegin() override { host_.downloadDidChange(*this); }
    void verificationFoundOtherFile() override;
    void finishingFoundDamage() override { startOverAfterFailedResume(); }
    void finishingWasCancelled(bool startsAgain) override;
    void partIsLeftWithoutWorker(DQDownloadWorkerPrototype& worker,
                                 const platform::Error& error) override;

    /// Made at the first call.
    Activity& activity();
    void dropWorkers();
    [[nodiscard]] qint64 partialBytes() const;
    void arrangeAutoResume();
    void setInterrupted(bool isInterrupted);
    [[nodiscard]] bool isTryArranged() const;
    void stopTransfer();
    void throwAwayFile();
    void discardKeptData();

    DownloadHost& host_;
    DownloadPaths paths_;
    std::unique_ptr<Activity> activity_;  ///< Null: it was not started yet.
    Verification verification_;           ///< Of the finished file.
    /// By its server, since it last sent something or the user wanted it.
    int refusals_ = 0;
    bool _isGettingDownloadPageSource = false;
    bool wasUnfinished_ = false;  ///< Before it was withdrawn.
    bool wasGoingOn_ = false;     ///< The same, without the user.
};

}  // namespace engine
