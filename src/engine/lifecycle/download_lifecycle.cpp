#include "engine/lifecycle/download_lifecycle.h"

#include <algorithm>
#include <optional>

#include "engine/acceleration/accelerator.h"
#include "engine/admission/download_manager.h"
#include "engine/admission/space_watch.h"
#include "engine/environment.h"
#include "engine/finishing/download_finisher.h"
#include "engine/lifecycle/transfer.h"
#include "engine/now.h"
#include "engine/paths/download_paths.h"
#include "engine/paths/file_access.h"
#include "engine/paths/intermediate_files.h"
#include "engine/record/download.h"
#include "engine/record/known_file.h"
#include "engine/record/user_settings.h"
#include "engine/settings.h"
#include "engine/workers/debug_log.h"
#include "http/http_request_error.h"
#include "platform/base/log.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

constexpr char autoResumeOperation[] = "togglePause";

/// When a worker of any download failed last, on the scale that never jumps.
std::optional<platform::Seconds> lastFailure;

bool isActive(const DQDownload& download) {
    return matchesStatusMask(download.status(), activeStatuses);
}

qint64 partialBytes(DQDownload& download) {
    qint64 sum = 0;
    for (const auto& worker : download.transfer().workers())
        sum += worker->fractionStartByte() + worker->resumeByteOffset() + worker->downloadedBytes();
    if (sum <= 0 && download.userSettings().contains(keys::responseURL) &&
        download.paths().hasIntermediateDownloadTargetPath())
        sum = measurePartialFiles(download.paths().intermediateDownloadTargetPath(false, false))
                  .total;
    return sum;
}

/// Whether the server would not go on, which is told by its having sent nothing. A disk that takes
/// nothing, a user who gives no password and a network that is away, as just after waking, say
/// nothing about the data that is there.
bool isFailedResume(const Transfer::Workers& workers, const platform::Error& error) {
    if (error.domain == workerErrorDomain ||
        http::hasRequestErrorCode(error, http::HTTPRequestErrorCode::Authentication) ||
        http::isFromTheWayToServer(error))
        return false;
    const auto isResumed = [](const auto& worker) { return worker->resumeByteOffset() >= 1; };
    qint64 sum = 0;
    for (const auto& worker : workers)
        sum += worker->downloadedBytes();
    return sum < 1 && std::any_of(workers.begin(), workers.end(), isResumed);
}

/// One download of a burst of failures is resumed; the others wait for the user.
void arrangeAutoResume(DQDownload& download) {
    const platform::UserDefaults& defaults = platform::standardDefaults();
    if (!defaults.get(settings::autoResume))
        return;
    const platform::Seconds now = monotonicNow();
    const platform::Seconds threshold = defaults.get(settings::autoResumeIntervalThreshold);
    if (!lastFailure || now < *lastFailure || now - *lastFailure > threshold) {
        platform::mainRunLoop().performAfter(&download, autoResumeOperation,
                                             defaults.get(settings::autoResumeDelay),
                                             [&download] { download.togglePause(); });
        platform::log(u"%1 queued for auto-resume"_s.arg(download.description()));
    }
    lastFailure = now;
}

}  // namespace

void announceChangedQueue() {
    DQDownload::invalidateQueuedAndDownloadingDownloads();
    DQDownload::startEligibleQueuedDownloadsWithTimer();
}

void abortDownload(DQDownload& download) {
    download.setStatus(DQDownloadStatusAborted);
    mainController().updateDownload(download);
    environment().addToHistory(download);
    announceChangedQueue();
    endFileAccess();
}

void cancelArrangedResume(const DQDownload& download) {
    platform::mainRunLoop().cancel(&download, autoResumeOperation);
    cancelSpaceWatch(download);
}

void queueDownload(DQDownload& download) {
    if (download.status() != DQDownloadStatusPaused)
        return;
    cancelArrangedResume(download);
    download.setStatus(DQDownloadStatusQueued);
    download.setIsInterrupted(false);
    mainController().invalidateLongTermNumberOfQueuedOrDownloadingDownloads();
    announceChangedQueue();
}

void pauseDownload(DQDownload& download) {
    if (!isActive(download))
        return;
    Transfer& transfer = download.transfer();
    if (download.status() == DQDownloadStatusDownloading && transfer.hasWorkers()) {
        const bool isWorthKeeping = partialBytes(download) >= 1;
        transfer.dropWorkers();
        if (!isWorthKeeping)
            download.paths().discardPartialData();
    }
    download.finisher().cancel();
    download.setStatus(DQDownloadStatusPaused);
    transfer.setIsGettingDownloadPageSource(false);
    announceChangedQueue();
    mainController().updateDownload(download);
    endFileAccess();
}

void togglePauseOfDownload(DQDownload& download) {
    if (download.status() == DQDownloadStatusPaused) {
        queueDownload(download);
        return;
    }
    pauseDownload(download);
    mainController().decrementLongTermNumberOfQueuedOrDownloadingDownloads();
}

void removeDownload(DQDownload& download, bool moveToTrashIfDone) {
    download.setIsBeingRemoved(true);
    cancelArrangedResume(download);
    if (matchesStatusMask(download.status(), unfinishedStatuses)) {
        download.finisher().cancel();
        download.transfer().dropWorkers();
        download.paths().discardPartialData();
        download.setStatus(DQDownloadStatusAborted);
        download.transfer().setIsGettingDownloadPageSource(false);
        announceChangedQueue();
    } else if (moveToTrashIfDone) {
        static_cast<void>(platform::moveToTrash(download.path()));
    }
    constexpr platform::Seconds vanishInterval = 0.1;
    mainController().disableAllDoneNotificationForDownload(download);
    mainController().updateDownload(download, false, true, vanishInterval);
    endFileAccess();
}

void handleFailure(DQDownload& download, DQDownloadWorkerPrototype& worker,
                   const platform::Error& error) {
    debugLog(&download, [&] {
        return u"%1 failed with error: %2 (worker: %3)"_s.arg(download.description(), error.text,
                                                              worker.description());
    });
    const bool hasNotBegun = !download.transfer().isFirst(worker) && worker.downloadedBytes() == 0;
    if (hasNotBegun && error.domain != workerErrorDomain && parkRefusedWorker(download, worker))
        return;
    if (isFailedResume(download.transfer().workers(), error)) {
        startOverAfterFailedResume(download);
        return;
    }
    download.transfer().dropWorkers();
    interruptDownload(download, error);
}

void interruptDownload(DQDownload& download, const platform::Error& error) {
    download.setIsInterrupted(true);
    download.setLastError(error);
    if (error.underlying)
        platform::log(error.text + u": "_s + error.underlying->text);
    pauseDownload(download);
    arrangeAutoResume(download);
    resumeWhenThereIsSpace(download, error);
    announceChangedQueue();
}

void startOverAfterFailedResume(DQDownload& download) {
    download.transfer().dropWorkers();
    download.userSettings().remove(keys::responseURL);
    download.userSettings().remove(keys::accelerationWorkers);
    forgetFile(download.userSettings());
    download.paths().discardPartialData();
    download.transfer().resetProgress();
    platform::log(
        u"%1 cannot resume download; will try complete reload"_s.arg(download.description()));
    download.setStatus(DQDownloadStatusQueued);
    mainController().invalidateLongTermNumberOfQueuedOrDownloadingDownloads();
    announceChangedQueue();
}

void goOnAlone(DQDownload& download) {
    download.transfer().dropWorkers();
    download.startDownload();
}

}  // namespace engine
