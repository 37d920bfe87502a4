#include "engine/finishing/download_finisher.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <numeric>

#include "engine/acceleration/accelerator.h"
#include "engine/admission/download_manager.h"
#include "engine/background.h"
#include "engine/environment.h"
#include "engine/finishing/whole_file.h"
#include "engine/lifecycle/download_lifecycle.h"
#include "engine/lifecycle/resume_plan.h"
#include "engine/lifecycle/transfer.h"
#include "engine/paths/download_paths.h"
#include "engine/paths/file_access.h"
#include "engine/paths/intermediate_files.h"
#include "engine/paths/support_folder.h"
#include "engine/record/download.h"
#include "engine/record/known_file.h"
#include "engine/record/user_settings.h"
#include "engine/workers/debug_log.h"
#include "engine/workers/partial_file.h"
#include "engine/workers/partial_file_marks.h"
#include "links/paths/available_path.h"
#include "platform/base/log.h"
#include "platform/files/descriptor.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

qint64 totalLength(const std::vector<FilePiece>& pieces) {
    return std::accumulate(pieces.begin(), pieces.end(), qint64{0},
                           [](qint64 sum, const FilePiece& piece) { return sum + piece.length; });
}

qint64 bytesOf(const DQDownloadWorkerPrototype& worker) {
    return worker.resumeByteOffset() + worker.downloadedBytes();
}

/// The folder of partial data is emptied when the program quits with nothing left to do, and what
/// is finished must not go with it. Answers where the file is now.
QString movedOutOfPartialData(const QString& path) {
    const QString folder = QFileInfo(path).path();
    if (folder != intermediateDownloadBasePath())
        return path;
    const QString target =
        links::availablePath(QFileInfo(folder).path() + u'/' + QFileInfo(path).fileName());
    return platform::moveFile(path, target) ? path : target;
}

}  // namespace

void DownloadFinisher::workerDidFinish(DQDownloadWorkerPrototype& worker) {
    Transfer& transfer = download_.transfer();
    if (transfer.workers().size() >= 2 && transfer.isFirst(worker) && isWholeFile(worker)) {
        platform::log(u"%1 first worker finished already; ditching acceleration workers"_s.arg(
            download_.description()));
        transfer.dropWorkers(1);
        download_.userSettings().remove(keys::accelerationWorkers);
    }
    if (!startParkedWorker(download_)) {
        handleFailure(download_, worker,
                      makeWorkerError(WorkerErrorCode::WrongPart,
                                      u"%1 has no worker for a part that is left"_s.arg(
                                          download_.description())));
        return;
    }
    if (!std::all_of(transfer.workers().begin(), transfer.workers().end(),
                     [](const auto& other) { return other->isDone(); }))
        return;
    const bool hasData = transfer.figures().total() > 0;
    const QByteArray body = transfer.workers().front()->wholeBody();
    std::vector<FilePiece> pieces = body.isEmpty() ? piecesOfWorkers() : std::vector<FilePiece>();
    transfer.freezeFigures();
    transfer.dropWorkers();
    if (!body.isEmpty())
        place(body);
    else if (hasData)
        conclude(std::move(pieces));
    else
        endWithoutData();
}

/// The first of several workers was to be cut off, but has read on to the end of the file.
bool DownloadFinisher::isWholeFile(const DQDownloadWorkerPrototype& worker) const {
    return worker.status() == DQDownloadWorkerStatusFinished && worker.endByte() == 0 &&
           bytesOf(worker) == knownFile(download_.userSettings()).length;
}

std::vector<FilePiece> DownloadFinisher::piecesOfWorkers() const {
    const Transfer::Workers& workers = download_.transfer().workers();
    const QString primaryPath = download_.paths().intermediateDownloadTargetPath(false, false);
    const DQDownloadWorkerPrototype& first = *workers.front();
    if (first.resumesInSeparateFile() && first.resumeByteOffset() >= 1) {
        std::vector<FilePiece> pieces{{primaryPath, platform::fileSize(primaryPath).value_or(0)}};
        for (const QString& path : fragmentPathsForIntermediateDownloadTargetPath(primaryPath))
            pieces.push_back({path, platform::fileSize(path).value_or(0)});
        return pieces;
    }
    std::vector<FilePiece> pieces;
    for (const auto& worker : workers)
        pieces.push_back({pieces.empty() ? primaryPath : worker->targetPath(), bytesOf(*worker)});
    return pieces;
}

void DownloadFinisher::finishPartialData(const ResumePlan& plan) {
    const QString primaryPath = download_.paths().intermediateDownloadTargetPath(false, false);
    std::vector<FilePiece> pieces{
        {primaryPath, plan.fractions.empty() ? plan.primarySize : plan.fractions.front().start}};
    for (const StoredFraction& fraction : plan.fractions)
        pieces.push_back({fraction.target, fraction.length()});
    conclude(std::move(pieces));
}

void DownloadFinisher::adoptFinishedFile(const QString& path) {
    download_.paths().discardPartialData();
    removePartialFileMarks(path);
    endWithFile(path);
}

void DownloadFinisher::conclude(std::vector<FilePiece> pieces) {
    if (hasRightLength(pieces))
        assemble(std::move(pieces));
    else
        handleWrongLength(pieces);
}

/// Whatever servers and workers say: what lies on the disk must add up to what was announced.
bool DownloadFinisher::hasRightLength(const std::vector<FilePiece>& pieces) const {
    const qint64 length = knownFile(download_.userSettings()).length;
    if (length > 0 && totalLength(pieces) != length)
        return false;
    return std::all_of(pieces.begin(), pieces.end(), [&](const FilePiece& piece) {
        const qint64 size = platform::fileSize(piece.path).value_or(0);
        return pieces.size() == 1 ? size == piece.length : size >= piece.length;
    });
}

/// Begins anew without acceleration if parts do not fit together. A single file is kept, as what a
/// resume measures, unless it is too long to be resumed.
void DownloadFinisher::handleWrongLength(const std::vector<FilePiece>& pieces) {
    const qint64 length = knownFile(download_.userSettings()).length;
    platform::log(u"%1 has parts of %2 bytes in place of %3"_s.arg(download_.description())
                      .arg(totalLength(pieces))
                      .arg(length));
    download_.transfer().thawFigures();
    if (pieces.size() >= 2) {
        download_.transfer().setHasFailedToAddAccelerationWorkers();
        startOverAfterFailedResume(download_);
        return;
    }
    if (platform::fileSize(pieces.front().path).value_or(0) > length) {
        download_.userSettings().remove(keys::responseURL);
        download_.paths().discardPartialData();
    }
    interruptDownload(download_,
                      makeWorkerError(WorkerErrorCode::WrongLength,
                                      u"%1 does not have the length that was announced"_s.arg(
                                          download_.description())));
}

void DownloadFinisher::beginJob() {
    job_ = std::make_shared<Job>();
    job_->origin = originOf(download_);
    job_->hasUserChosenPath = download_.userSettings().contains(keys::downloadFile);
}

void DownloadFinisher::place(const QByteArray& body) {
    beginJob();
    job_->body = body;
    job_->target = download_.finalDownloadTargetPath();
    runInBackground([job = job_] { job->placeBody(); },
                    [weak = download_.weak_from_this(), job = job_] {
                        if (const auto download = weak.lock())
                            download->finisher().didPlace(job);
                    });
}

void DownloadFinisher::Job::placeBody() {
    if (isCancelled)
        return;
    wasMoveTried = true;
    moveError =
        target.isEmpty() ? platform::posixError(EACCES) : placeWholeFile(body, target, origin);
}

void DownloadFinisher::didPlace(const std::shared_ptr<Job>& job) {
    const bool isPlaced = job->wasMoveTried && !job->moveError;
    if (download_.isBeingRemoved()) {
        if (isPlaced)
            QFile::remove(job->target);
        endJob();
    } else if (isPlaced) {
        endJob();
        // Of an earlier attempt.
        download_.paths().discardPartialData();
        endWithFile(job->target);
    } else if (job->isCancelled) {
        endCancelledJob();
    } else {
        concludeThroughPartialFile(job->body);
    }
}

/// Whatever stood in the way, a taken name or a full disk: a partial file can wait for better
/// times.
void DownloadFinisher::concludeThroughPartialFile(const QByteArray& body) {
    job_.reset();
    const QString path = download_.paths().intermediateDownloadTargetPath(true, true);
    PartialFile file;
    std::optional<platform::Error> error = file.open(path, 0);
    if (!error)
        error = file.write(body);
    if (!error) {
        conclude({{path, body.size()}});
        return;
    }
    download_.transfer().thawFigures();
    interruptDownload(
        download_,
        makeWorkerError(WorkerErrorCode::CannotWrite,
                        u"%1 cannot write to intermediate file"_s.arg(download_.description()),
                        &*error));
}

void DownloadFinisher::assemble(std::vector<FilePiece> pieces) {
    beginJob();
    job_->pieces = std::move(pieces);
    const bool movesAtOnce = job_->pieces.size() == 1;
    // One file of a known length shows by itself that it is complete.
    if (!movesAtOnce || knownFile(download_.userSettings()).length == 0)
        markFinishing(job_->pieces.front().path);
    // Where to is decided as late as may be, for names, rules and folders change; but a file in one
    // piece is put together in no time, and a second way there and back would cost more than that.
    if (movesAtOnce)
        job_->target = download_.finalDownloadTargetPath();
    runInBackground(
        [job = job_, movesAtOnce] {
            job->assemble();
            if (movesAtOnce && !job->assembly.isCancelled && !job->assembly.error)
                job->moveToTarget();
        },
        [weak = download_.weak_from_this(), job = job_] {
            if (const auto download = weak.lock())
                download->finisher().didAssemble(job);
        });
}

void DownloadFinisher::didAssemble(const std::shared_ptr<Job>& job) {
    if (job->wasMoveTried) {
        didMove(job);
    } else if (job->isCancelled) {
        endCancelledJob();
    } else if (job->assembly.error) {
        endJob();
        interruptDownload(download_, *job->assembly.error);
    } else {
        move(job);
    }
}

void DownloadFinisher::move(const std::shared_ptr<Job>& job) {
    job->target = download_.finalDownloadTargetPath();
    runInBackground([job] { job->moveToTarget(); },
                    [weak = download_.weak_from_this(), job] {
                        if (const auto download = weak.lock())
                            download->finisher().didMove(job);
                    });
}

void DownloadFinisher::Job::moveToTarget() {
    const QString& source = pieces.front().path;
    wasMoveTried = true;
    // Before the move: from then on it is how the file is known again if we are stopped.
    writeOrigin(origin, source);
    moveError =
        target.isEmpty() ? platform::posixError(EACCES) : platform::moveFile(source, target);
    const QString& path = moveError ? source : target;
    removePartialFileMarks(path);
    if (!origin.isKnownTo(path))
        writeOrigin(origin, path);
    if (!moveError) {
        platform::syncFolderOf(QFile::encodeName(target));
        removePartialFiles(source);
    }
}

void DownloadFinisher::didMove(const std::shared_ptr<Job>& job) {
    constexpr int mostAttempts = 8;
    const QString& source = job->pieces.front().path;
    const std::optional<platform::Error>& error = job->moveError;
    if (download_.isBeingRemoved()) {
        QFile::remove(error ? source : job->target);
        endJob();
        return;
    }
    // Somebody has taken the free path that was chosen a moment ago.
    const bool isTaken = error && error->is(platform::posixErrorDomain, EEXIST);
    if (isTaken && !job->hasUserChosenPath && ++job->attempts < mostAttempts) {
        move(job);
        return;
    }
    endJob();
    if (error) {
        platform::log(u"cannot move downloaded %1 to <%2> (%3)"_s.arg(download_.description(),
                                                                      job->target, error->text));
        environment().beep();
        endWithFile(movedOutOfPartialData(source));
        return;
    }
    download_.paths().setIntermediateDownloadTargetPath({});
    endWithFile(job->target);
}

void DownloadFinisher::cancel() {
    if (job_)
        job_->isCancelled = true;
    startsWhenIdle_ = false;
}

void DownloadFinisher::endJob() {
    job_.reset();
    download_.transfer().thawFigures();
}

void DownloadFinisher::endCancelledJob() {
    endJob();
    if (std::exchange(startsWhenIdle_, false) && download_.status() == DQDownloadStatusDownloading)
        download_.startDownload();
}

void DownloadFinisher::endWithoutData() {
    download_.transfer().thawFigures();
    debugLog(&download_, [&] {
        return u"%1 finished with no data (status code: %2)"_s.arg(
            download_.description(), download_.userSettings().string(keys::statusCode));
    });
    download_.paths().discardPartialData();
    download_.transfer().setIsGettingDownloadPageSource(false);
    download_.setStatus(DQDownloadStatusAborted);
    close();
}

void DownloadFinisher::endWithFile(const QString& path) {
    download_.setURL(platform::Url::fromFilePath(path));
    if (const QByteArray bookmark = platform::fileBookmark(path); !bookmark.isEmpty())
        download_.userSettings().set(keys::alias, bookmark);
    download_.setStatus(DQDownloadStatusDone);
    openByRule(download_, path);
    close();
}

void DownloadFinisher::close() {
    mainController().updateDownload(download_);
    environment().addToHistory(download_);
    DQDownload::startEligibleQueuedDownloadsWithTimer();
    endFileAccess();
}

}  // namespace engine
