#include "engine/lifecycle/download.h"

#include <QDir>
#include <QFileInfo>
#include <utility>

#include "engine/acceleration/acceleration_settings.h"
#include "engine/acceleration/accelerator.h"
#include "engine/acceleration/tail_watch.h"
#include "engine/context.h"
#include "engine/lifecycle/activity.h"
#include "engine/lifecycle/download_starter.h"
#include "engine/lifecycle/failure_handler.h"
#include "engine/lifecycle/kept_aside.h"
#include "engine/lifecycle/response_handler.h"
#include "engine/paths/download_folder.h"
#include "engine/paths/intermediate_files.h"
#include "engine/paths/support_folder.h"
#include "engine/record/known_file.h"
#include "engine/record/past_failure.h"
#include "engine/settings.h"
#include "engine/workers/debug_log.h"
#include "engine/workers/retry_after.h"
#include "links/paths/path_components.h"
#include "links/paths/sandbox.h"
#include "platform/base/log.h"
#include "platform/base/user_defaults.h"
#include "platform/files/disks.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {

DQDownload::DQDownload(const Context& context, DownloadHost& host, const platform::Url& url)
    : DownloadRecord(context, url), host_(host), paths_(*this) {
    if (const auto checksum = checksumFromFragment(url.fragment().value_or(QString())))
        userSettings().set(keys::checksum, checksum->text());
}

DQDownload::~DQDownload() = default;

DownloadPtr DQDownload::shared_from_this() {
    return std::static_pointer_cast<DQDownload>(DownloadRecord::shared_from_this());
}

std::shared_ptr<const DQDownload> DQDownload::shared_from_this() const {
    return std::static_pointer_cast<const DQDownload>(DownloadRecord::shared_from_this());
}

std::weak_ptr<DQDownload> DQDownload::weak_from_this() {
    return shared_from_this();
}

void DQDownload::setURL(const platform::Url& url) {
    identity().setURL(url);
    // Only these are sorted by their hosts.
    if (status() == DQDownloadStatusPaused || status() == DQDownloadStatusQueued)
        host_.placeDidChange();
}

// What survives a restart.

QVariantMap DQDownload::userSettingsArchiveWithPausedStatus(bool paused,
                                                            bool writeMetadataToDownloadBundle) {
    QVariantMap archive = paths_.archive(paused);
    // While the file is being finished, its container may be on the way out.
    const bool isBeingFinished = activity_ && activity_->finisher.isBusy();
    if (writeMetadataToDownloadBundle && archive.contains(keys::resumePath) && !isBeingFinished)
        paths_.writeMetadata(archive);
    if (userSettings().contains(keys::statusCode))
        archive.insert(keys::statusCode, userSettings().value(keys::statusCode));
    // What was removed has that status as well.
    const bool hasFailed = status() == DQDownloadStatusAborted && !wasUnfinished_;
    const bool isForGood = hasFailed || wasGivenUp();
    if (isForGood || (isInterrupted() && !matchesStatusMask(status(), activeStatuses)))
        archive.insert(
            keys::failure,
            PastFailure{isForGood, lastError() ? std::optional(*lastError()) : std::nullopt}
                .archive());
    return archive;
}

// Paths.

QString DQDownload::pathToReveal() {
    const QString container = downloadContainerPath();
    if (matchesStatusMask(status(), unfinishedStatuses) && !container.isEmpty() &&
        platform::pathExists(container))
        return container;
    const QString file = findFile();
    return links::isSandboxed() && !file.isEmpty() ? QFileInfo(file).canonicalFilePath() : file;
}

void DQDownload::setIntermediateDownloadTargetPath(const QString& path) {
    const QString folder = links::stringByDeletingLastPathComponent(path);
    if (isDownloadContainer(folder) ||
        folder == intermediateDownloadBasePath(context().environment) || folder == QDir::tempPath())
        paths_.setIntermediateDownloadTargetPath(path);
    else
        platform::log(u"this is no place for a partial file: %1"_s.arg(path));
}

QString DQDownload::downloadBasePath() const {
    return engine::downloadBasePath(*this);
}

// Life.

void DQDownload::changeStatus(DQDownloadStatus after, StatusCause cause) {
    const DQDownloadStatus before = std::exchange(_status, after);
    if (activity_)
        activity_->tailWatch.reset();
    // What is saved of one that stands still says why it does.
    if (!matchesStatusMask(after, activeStatuses))
        userSettings().noteChangeBeside();
    host_.statusDidChange({*this, before, after, cause});
}

void DQDownload::startDownload() {
    refusals_ = 0;
    startDownloadWithURL(std::nullopt, false);
}

void DQDownload::startDownloadWithURL(const std::optional<platform::Url>& url,
                                      bool extractedFromDownloadPage) {
    const auto keep = shared_from_this();
    engine::startDownload(*this, url, extractedFromDownloadPage);
}

void DQDownload::becomeDownloading() {
    cancelArrangedResume();
    lastError_.reset();
    setInterrupted(false);
    userSettings().remove(keys::keptBytes);
    setChecksumResult(userSettings(), ChecksumResult::Unknown);
    if (!userSettings().contains(keys::originalURL))
        userSettings().set(keys::originalURL, URLString());
    changeStatus(DQDownloadStatusDownloading, StatusCause::Started);
}

void DQDownload::addToQueue() {
    if (status() != DQDownloadStatusPaused)
        return;
    cancelArrangedResume();
    setInterrupted(false);
    refusals_ = 0;
    host_.releaseServer(*this);
    changeStatus(DQDownloadStatusQueued, StatusCause::Queued);
}

void DQDownload::togglePause() {
    if (status() == DQDownloadStatusPaused)
        addToQueue();
    else
        stop(StatusCause::PausedByUser);
}

qint64 DQDownload::partialBytes() const {
    qint64 sum = 0;
    for (const auto& worker : workers())
        sum += worker->fractionStartByte() + worker->resumeByteOffset() + worker->downloadedBytes();
    if (sum <= 0 && userSettings().contains(keys::responseURL) &&
        paths_.hasIntermediateDownloadTargetPath())
        sum = measurePartialFiles(paths_.intermediateDownloadTargetPath()).total;
    return sum;
}

void DQDownload::stop(StatusCause cause) {
    if (!matchesStatusMask(status(), activeStatuses))
        return;
    const auto keep = shared_from_this();
    stopTransfer();
    takePartialDataBack(*this);
    refusals_ = 0;
    changeStatus(DQDownloadStatusPaused, cause);
}

void DQDownload::stopTransfer() {
    if (status() == DQDownloadStatusDownloading && !workers().empty()) {
        const bool isWorthKeeping = partialBytes() >= 1;
        noteKeptBytes();
        dropWorkers();
        if (!isWorthKeeping)
            paths_.discardPartialData();
    }
    if (activity_)
        activity_->finisher.cancel();
    _isGettingDownloadPageSource = false;
}

void DQDownload::interruptUntilResumed(const platform::Error& error) {
    setInterrupted(true);
    hasFailedBefore_ = false;
    lastError_ = std::make_unique<platform::Error>(error);
    if (error.underlying)
        platform::log(error.text + u": "_s + error.underlying->text);
    stop(StatusCause::Interrupted);
}

void DQDownload::interrupt(const platform::Error& error) {
    interruptUntilResumed(error);
    arrangeAutoResume();
    activity().spaceWatch.resumeWhenThereIsSpace(error);
}

/// One download of a burst of failures is resumed; the others wait for the user.
void DQDownload::arrangeAutoResume() {
    if (const auto delay = host_.noteFailure()) {
        activity().autoResume.start(*delay, [this] { togglePause(); });
        platform::log(u"%1 queued for auto-resume"_s.arg(description()));
    }
}

void DQDownload::cancelArrangedResume() {
    if (!activity_)
        return;
    activity_->autoResume.cancel();
    activity_->spaceWatch.cancel();
}

bool DQDownload::isResumeArranged() const {
    return autoResumeAfterSleep() || isTryArranged();
}

bool DQDownload::isTryArranged() const {
    return activity_ && (activity_->autoResume.isActive() || activity_->spaceWatch.isWatching());
}

void DQDownload::abandon() {
    if (!activity_)
        return;
    cancelArrangedResume();
    activity_->finisher.cancel();
    dropWorkers();
}

/// The archive says it, too.
void DQDownload::setInterrupted(bool isInterrupted) {
    if (std::exchange(_isInterrupted, isInterrupted) || isInterrupted)
        userSettings().noteChangeBeside();
}

void DQDownload::abort() {
    userSettings().noteChangeBeside();
    noteKeptBytes();
    dropWorkers();
    takePartialDataBack(*this);
    changeStatus(DQDownloadStatusAborted, StatusCause::Failed);
}

void DQDownload::startOverAfterFailedResume() {
    dropWorkers();
    userSettings().remove(keys::responseURL);
    userSettings().remove(keys::accelerationWorkers);
    forgetFile(userSettings());
    paths_.discardPartialData();
    transfer().resetProgress();
    platform::log(u"%1 cannot resume download; will try complete reload"_s.arg(description()));
    changeStatus(DQDownloadStatusQueued, StatusCause::StartedOver);
}

void DQDownload::startOverBesidePartialData() {
    noteKeptBytes();
    dropWorkers();
    putPartialDataAside(*this);
    transfer().resetProgress();
    changeStatus(DQDownloadStatusQueued, StatusCause::StartedOver);
}

void DQDownload::finishWithPartialData() {
    userSettings().set(keys::expectedBytes, workers().front()->resumeByteOffset());
    dropWorkers();
    startDownloadWithURL(std::nullopt, false);
}

void DQDownload::noteKeptBytes() {
    qint64 arrived = 0;
    for (const auto& worker : workers())
        arrived += worker->resumeByteOffset() + worker->downloadedBytes();
    if (arrived > 0 && paths_.hasIntermediateDownloadTargetPath())
        userSettings().set(keys::keptBytes, arrived);
}

bool DQDownload::askOriginalAgain() {
    const auto last = platform::Url::parse(userSettings().string(keys::responseURL));
    if (!last || last->forTransfer() == URL().forTransfer() || URL().isFile() ||
        isDownloadPageURL() || !paths_.hasIntermediateDownloadTargetPath())
        return false;
    platform::log(u"%1 asks its original address again"_s.arg(description()));
    userSettings().set(keys::responseURL, URL().absoluteString());
    dropWorkers();
    startDownloadWithURL(std::nullopt, false);
    return true;
}

bool DQDownload::putOff(const DQDownloadWorkerPrototype& worker,
                        std::optional<platform::Seconds> told) {
    if (refusals_ >= context().defaults.get(settings::retriesWhenServerIsBusy))
        return false;
    const auto keep = shared_from_this();
    host_.serverDidRefuse(*this, {worker, told, pauseAfterRefusal(refusals_++)});
    stopTransfer();
    changeStatus(DQDownloadStatusQueued, StatusCause::PutOff);
    return true;
}

void DQDownload::takeOverPartialData(DQDownload& other) {
    userSettings().set(keys::attempts, other.userSettings().value(keys::attempts));
    if (!userSettings().contains(keys::checksum))
        userSettings().set(keys::checksum, other.userSettings().value(keys::checksum));
    // All of it has come, and it is not the file.
    if (other.isWrongFile()) {
        other.paths_.discardPartialData();
        takePartialDataBack(other);
    }
    if (!other.paths_.hasIntermediateDownloadTargetPath())
        return;
    const QStringList others{keys::responseURL, keys::accelerationWorkers, keys::keptBytes,
                             keys::keptAside};
    for (const QString& key : knownFileKeys() + others)
        userSettings().set(key, other.userSettings().value(key));
    paths_.setIntermediateDownloadTargetPath(other.paths_.intermediateDownloadTargetPath());
    other.paths_.setIntermediateDownloadTargetPath({});
}

void DQDownload::goOnAlone() {
    dropWorkers();
    startDownloadWithURL(std::nullopt, false);
}

void DQDownload::removeAndMoveToTrashIfDone(bool moveToTrash) {
    const auto keep = shared_from_this();
    _isBeingRemoved = true;
    cancelArrangedResume();
    if (matchesStatusMask(status(), unfinishedStatuses)) {
        if (activity_)
            activity_->finisher.cancelForGood();
        dropWorkers();
        paths_.discardPartialDataInBackground();
        _isGettingDownloadPageSource = false;
        changeStatus(DQDownloadStatusAborted, StatusCause::Removed);
    } else if (moveToTrash) {
        throwAwayFile();
    }
    // An aborted one may have kept some.
    discardKeptData();
    host_.downloadWasRemoved(*this);
}

void DQDownload::withdraw() {
    const auto keep = shared_from_this();
    wasUnfinished_ = matchesStatusMask(status(), unfinishedStatuses);
    wasGoingOn_ = matchesStatusMask(status(), activeStatuses) || isTryArranged();
    _isBeingRemoved = _isWithdrawn = true;
    cancelArrangedResume();
    if (wasUnfinished_) {
        stopTransfer();
        takePartialDataBack(*this);
        changeStatus(DQDownloadStatusAborted, StatusCause::Removed);
    }
    host_.downloadWasRemoved(*this);
}

void DQDownload::takeBack() {
    _isBeingRemoved = _isWithdrawn = false;
    refusals_ = 0;
    if (std::exchange(wasUnfinished_, false))
        changeStatus(DQDownloadStatusPaused, StatusCause::Paused);
    if (std::exchange(wasGoingOn_, false))
        addToQueue();
}

void DQDownload::giveUpData() {
    _isWithdrawn = false;
    if (activity_)
        activity_->finisher.cancelForGood();
    discardKeptData();
}

void DQDownload::discardKeptData() {
    // A finished file that found no place lies where its parts did.
    if (status() != DQDownloadStatusDone)
        paths_.discardPartialDataInBackground();
    dropPartialDataAside(*this);
}

/// The move may be a long copy.
void DQDownload::throwAwayFile() {
    const QString file = findFile();
    if (file.isEmpty())
        return;
    const auto isMoved = std::make_shared<bool>(false);
    context().disks.holding(file).run([file, isMoved] { *isMoved = platform::moveToTrash(file); },
                                      [keep = shared_from_this(), file, isMoved] {
                                          if (!*isMoved)
                                              keep->host().fileWasNotThrownAway(file);
                                      });
}

// Checksum.

void DQDownload::expectChecksum(const std::optional<Checksum>& checksum,
                                std::function<void()> completion) {
    userSettings().set(keys::checksum, checksum ? QVariant(checksum->text()) : QVariant());
    if (!checksum)
        userSettings().remove(keys::serverChecksum);
    if (status() == DQDownloadStatusDone) {
        setChecksumResult(userSettings(), ChecksumResult::Verifying);
        verification_.begin(*this, checksum.value_or(Checksum()).algorithm,
                            [this, completion = std::move(completion)](const FileSum& sum) {
                                if (sum.checksum)
                                    judgeChecksum(userSettings(), *sum.checksum);
                                else
                                    setChecksumResult(userSettings(), ChecksumResult::Unreadable);
                                host_.downloadDidChange(*this);
                                if (completion)
                                    completion();
                            });
    } else if (const auto computed = computedChecksum(userSettings());
               !checksum || (computed && *computed == *checksum)) {
        setChecksumResult(userSettings(), ChecksumResult::Unknown);
    }
    host_.downloadDidChange(*this);
}

bool DQDownload::isVerifying() const {
    return (activity_ && activity_->finisher.isVerifying()) ||
           (status() == DQDownloadStatusDone &&
            checksumResult(userSettings()) == ChecksumResult::Verifying);
}

// Acceleration.

bool DQDownload::accelerates() const {
    return AccelerationSettings(context().defaults).acceleratesHost(queueRelevantHost());
}

void DQDownload::toggleAcceleration() {
    AccelerationSettings(context().defaults).toggleAccelerationOfHost(queueRelevantHost());
}

double DQDownload::downloadCompletionFraction() const {
    if (status() == DQDownloadStatusDone)
        return 1;
    return status() == DQDownloadStatusDownloading && activity_
               ? activity_->transfer.downloadFraction()
               : 0;
}

OverallFigures DQDownload::figures() const {
    return activity_ ? activity_->transfer.figures() : OverallFigures();
}

std::optional<SpeedMeter::Span> DQDownload::speed(platform::Seconds now) const {
    if (!activity_)
        return std::nullopt;
    return activity_->transfer.speed().span(now, figures().downloaded,
                                            dates().downloadDate().value_or(now));
}

const Transfer::Workers& DQDownload::workers() const {
    static const Transfer::Workers none;
    return activity_ ? activity_->transfer.workers() : none;
}

// For the collaborators of this folder.

Activity& DQDownload::activity() {
    if (!activity_) {
        FinishingDelegate& whatItLeadsTo = *this;
        activity_ = std::make_unique<Activity>(*this, whatItLeadsTo);
    }
    return *activity_;
}

Transfer& DQDownload::transfer() {
    return activity().transfer;
}

SpeedLimit& DQDownload::speedLimit() {
    return activity().speedLimit;
}

DownloadFinisher& DQDownload::finisher() {
    return activity().finisher;
}

void DQDownload::dropWorkers() {
    if (activity_)
        activity_->transfer.dropWorkers();
}

// Reports of the workers.

QString DQDownload::targetPathForDownloadWorker(const DQDownloadWorkerPrototype&) {
    return paths_.chooseIntermediateDownloadTargetPath();
}

void DQDownload::resetProgressForDownloadWorker(DQDownloadWorkerPrototype&) {
    const auto keep = shared_from_this();
    if (workers().size() == 1)
        paths_.discardPartialData();
    transfer().resetProgress();
}

void DQDownload::downloadWorkerDidReceiveResponse(DQDownloadWorkerPrototype& worker,
                                                  const WorkerResponse& response) {
    const auto keep = shared_from_this();
    if (transfer().contains(worker))
        handleResponse(*this, worker, response);
}

void DQDownload::downloadWorkerDidReceiveBytes(DQDownloadWorkerPrototype& worker, qint64) {
    const auto keep = shared_from_this();
    refusals_ = 0;
    Transfer& transfer = this->transfer();
    std::unique_ptr<TailWatch>& tailWatch = activity().tailWatch;
    if (!tailWatch && workers().size() >= 2)
        tailWatch =
            std::make_unique<TailWatch>(transfer, [this] { return host_.connectionsFor(*this); });
    if (const qint64 offset = transfer.noteReceivedBytes(worker); offset >= 1)
        truncateFirstWorker(transfer, offset);
}

void DQDownload::downloadWorkerDidFail(DQDownloadWorkerPrototype& worker,
                                       const platform::Error& error) {
    const auto keep = shared_from_this();
    if (transfer().contains(worker))
        handleFailure(*this, worker, error);
}

void DQDownload::downloadWorkerDidFinish(DQDownloadWorkerPrototype& worker) {
    const auto keep = shared_from_this();
    if (!transfer().contains(worker))
        return;
    if (activity().tailWatch)
        activity().tailWatch->workerDidFinish(worker);
    finisher().workerDidFinish(worker);
    host_.connectionDidEnd(*this);
}

// What the end of the transfer leads to.

void DQDownload::didFinishWithFile(const QString& path) {
    identity().setURL(platform::Url::fromFilePath(path));
    if (const QByteArray bookmark = platform::fileBookmark(path); !bookmark.isEmpty())
        userSettings().set(keys::alias, bookmark);
    dropPartialDataAside(*this);
    changeStatus(DQDownloadStatusDone, StatusCause::Finished);
}

void DQDownload::verificationFoundOtherFile() {
    lastError_ = std::make_unique<platform::Error>(
        makeWorkerError(WorkerErrorCode::WrongChecksum,
                        u"%1 does not have the checksum that was expected"_s.arg(description())));
    platform::log(lastError_->text);
    abort();
}

void DQDownload::didFinishWithoutData() {
    debugLog(*this, [&] {
        return u"%1 finished with no data (status code: %2)"_s.arg(
            description(), userSettings().string(keys::statusCode));
    });
    _isGettingDownloadPageSource = false;
    takePartialDataBack(*this);
    changeStatus(DQDownloadStatusAborted, StatusCause::Failed);
}

void DQDownload::finishingDidFail(const platform::Error& error) {
    interrupt(error);
}

void DQDownload::finishingWasCancelled(bool startsAgain) {
    if (startsAgain && status() == DQDownloadStatusDownloading)
        startDownloadWithURL(std::nullopt, false);
}

void DQDownload::partIsLeftWithoutWorker(DQDownloadWorkerPrototype& worker,
                                         const platform::Error& error) {
    handleFailure(*this, worker, error);
}

}  // namespace engine
