#include "engine/finishing/download_finisher.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <numeric>

#include "engine/acceleration/accelerator.h"
#include "engine/context.h"
#include "engine/environment.h"
#include "engine/finishing/whole_file.h"
#include "engine/paths/download_paths.h"
#include "engine/paths/intermediate_files.h"
#include "engine/paths/metadata_file.h"
#include "engine/paths/part_layout.h"
#include "engine/paths/support_folder.h"
#include "engine/record/download_record.h"
#include "engine/record/known_file.h"
#include "engine/transfer/resume_plan.h"
#include "engine/transfer/transfer.h"
#include "engine/workers/debug_log.h"
#include "engine/workers/partial_file.h"
#include "engine/workers/partial_file_marks.h"
#include "links/paths/available_path.h"
#include "links/paths/file_attributes.h"
#include "platform/base/log.h"
#include "platform/base/run_loop.h"
#include "platform/files/descriptor.h"
#include "platform/files/disks.h"
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
QString movedOutOfPartialData(const QString& path, const Environment& environment) {
    const QString folder = QFileInfo(path).path();
    if (folder != intermediateDownloadBasePath(environment))
        return path;
    const QString target =
        links::availablePath(QFileInfo(folder).path() + u'/' + QFileInfo(path).fileName());
    return platform::moveFile(path, target) ? path : target;
}

/// Nothing may be written where the file was to go, or the path is taken that the user chose: to
/// try again would say the same. Of all else it may be that the disk recovers.
bool isNoPlaceForFile(const platform::Error& error) {
    return std::ranges::any_of(std::array{EEXIST, EACCES, EPERM, EROFS}, [&](int code) {
        return error.is(platform::posixErrorDomain, code);
    });
}

}  // namespace

DownloadFinisher::DownloadFinisher(Transfer& transfer, FinishingDelegate& delegate)
    : record_(transfer.record()),
      paths_(transfer.paths()),
      transfer_(transfer),
      delegate_(delegate) {}

void DownloadFinisher::runOnDisk(
    const QString& path, std::function<void()> work,
    void (DownloadFinisher::*completion)(const std::shared_ptr<Job>&)) {
    const auto complete = [this, weak = record_.weak_from_this(), job = job_, completion] {
        if (const auto kept = weak.lock())
            (this->*completion)(job);
    };
    job_->disk = &record_.context().disks.holding(path);
    job_->disk->run(std::move(work), complete);
}

void DownloadFinisher::interrupt(WorkerErrorCode code, const QString& text,
                                 const platform::Error* underlying) {
    delegate_.finishingDidFail(makeWorkerError(code, text, underlying));
}

void DownloadFinisher::workerDidFinish(DQDownloadWorkerPrototype& worker) {
    if (transfer_.workers().size() >= 2 && transfer_.isFirst(worker) && isWholeFile(worker)) {
        platform::log(u"%1 first worker finished already; ditching acceleration workers"_s.arg(
            record_.description()));
        transfer_.dropWorkers(1);
        record_.userSettings().remove(keys::accelerationWorkers);
    }
    if (!startParkedWorker(transfer_)) {
        delegate_.partIsLeftWithoutWorker(
            worker, makeWorkerError(
                        WorkerErrorCode::WrongPart,
                        u"%1 has no worker for a part that is left"_s.arg(record_.description())));
        return;
    }
    if (!std::all_of(transfer_.workers().begin(), transfer_.workers().end(),
                     [](const auto& other) { return other->isDone(); }))
        return;
    const bool hasData = transfer_.figures().total() > 0;
    const QByteArray body = transfer_.workers().front()->wholeBody();
    std::vector<FilePiece> pieces = body.isEmpty() ? piecesOfWorkers() : std::vector<FilePiece>();
    transfer_.freezeFigures();
    transfer_.dropWorkers();
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
           bytesOf(worker) == knownFile(record_.userSettings()).length;
}

std::vector<FilePiece> DownloadFinisher::piecesOfWorkers() const {
    const Transfer::Workers& workers = transfer_.workers();
    const QString primaryPath = paths_.intermediateDownloadTargetPath();
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
    const QString primaryPath = paths_.intermediateDownloadTargetPath();
    std::vector<FilePiece> pieces{
        {primaryPath, plan.fractions.empty() ? plan.primarySize : plan.fractions.front().start}};
    for (const StoredFraction& fraction : plan.fractions)
        pieces.push_back({fraction.target, fraction.length()});
    conclude(std::move(pieces));
}

void DownloadFinisher::adoptFinishedFile(const QString& path) {
    paths_.discardPartialData();
    removePartialFileMarks(path);
    // It was compared before it came there.
    const auto kept =
        platform::extendedAttribute(path, QString::fromUtf16(links::attributes::checksum));
    if (const auto checksum = checksumFromText(QString::fromLatin1(kept.value_or(QByteArray()))))
        judgeChecksum(record_.userSettings(), *checksum);
    endWithFile(path);
}

bool DownloadFinisher::areInPlace() const {
    return layoutOfPartialData(paths_.intermediateDownloadTargetPath()) == PartLayout::InPlace;
}

void DownloadFinisher::conclude(std::vector<FilePiece> pieces) {
    if (areInPlace())
        pieces = {{paths_.intermediateDownloadTargetPath(), totalLength(pieces)}};
    if (hasRightLength(pieces))
        assemble(std::move(pieces));
    else
        handleWrongLength(pieces);
}

/// Whatever servers and workers say: what lies on the disk must add up to what was announced.
bool DownloadFinisher::hasRightLength(const std::vector<FilePiece>& pieces) const {
    const qint64 length = knownFile(record_.userSettings()).length;
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
    const qint64 length = knownFile(record_.userSettings()).length;
    const std::optional<qint64> size = platform::fileSize(pieces.front().path);
    platform::log(u"%1 has parts of %2 bytes, and a file of %3 on the disk, in place of %4"_s.arg(
        record_.description(), QString::number(totalLength(pieces)),
        size ? QString::number(*size) : u"none"_s, QString::number(length)));
    transfer_.thawFigures();
    if (pieces.size() >= 2 || areInPlace()) {
        transfer_.setHasFailedToAddAccelerationWorkers();
        delegate_.finishingFoundDamage();
        return;
    }
    if (!size) {
        const platform::Error gone = platform::posixError(ENOENT);
        interrupt(WorkerErrorCode::CannotWrite,
                  u"%1 has lost its partial file"_s.arg(record_.description()), &gone);
        return;
    }
    if (*size > length) {
        record_.userSettings().remove(keys::responseURL);
        paths_.discardPartialData();
    }
    interrupt(WorkerErrorCode::WrongLength,
              u"%1 does not have the length that was announced"_s.arg(record_.description()));
}

void DownloadFinisher::beginJob() {
    job_ = std::make_shared<Job>();
    job_->origin = originOf(record_);
    job_->metadata = paths_.metadata();
    job_->expected = expectedChecksum(record_.userSettings());
    job_->begunSum = transfer_.takeSum();
    job_->hasUserChosenPath = record_.userSettings().contains(keys::downloadFile);
}

void DownloadFinisher::place(const QByteArray& body) {
    // What may be the wrong file is not seen at its place before that is known.
    if (expectedChecksum(record_.userSettings()))
        return concludeThroughPartialFile(body);
    beginJob();
    job_->body = body;
    job_->target = paths_.finalDownloadTargetPath();
    runOnDisk(
        job_->target, [job = job_] { job->placeBody(); }, &DownloadFinisher::didPlace);
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
    if (record_.isBeingRemoved()) {
        const bool mayGo = !record_.isWithdrawn() || keepBody(job->body);
        if (isPlaced && mayGo)
            QFile::remove(job->target);
        endJob();
    } else if (isPlaced) {
        endJob();
        // Of an earlier attempt.
        paths_.discardPartialData();
        endWithFile(job->target);
    } else if (job->isCancelled) {
        keepBody(job->body);
        endCancelledJob();
    } else {
        concludeThroughPartialFile(job->body);
    }
}

std::optional<platform::Error> DownloadFinisher::writePartialFile(const QByteArray& body) {
    PartialFile file(record_.context().disks, record_.context().loop.clock());
    std::optional<platform::Error> error =
        file.open({paths_.chooseIntermediateDownloadTargetPath()}, 0);
    return error ? error : file.write(body);
}

/// It was stopped on its way, all of it: no server is needed to go on. False: it could not be kept.
bool DownloadFinisher::keepBody(const QByteArray& body) {
    if (const auto error = writePartialFile(body)) {
        platform::log(u"%1 cannot be kept: %2"_s.arg(record_.description(), error->text));
        return false;
    }
    record_.userSettings().set(keys::expectedBytes, static_cast<qint64>(body.size()));
    return true;
}

/// Whatever stood in the way, a taken name or a full disk: a partial file can wait for better
/// times.
void DownloadFinisher::concludeThroughPartialFile(const QByteArray& body) {
    job_.reset();
    if (const auto error = writePartialFile(body)) {
        transfer_.thawFigures();
        interrupt(WorkerErrorCode::CannotWrite,
                  u"%1 cannot write to intermediate file"_s.arg(record_.description()), &*error);
        return;
    }
    conclude({{paths_.intermediateDownloadTargetPath(), body.size()}});
}

void DownloadFinisher::assemble(std::vector<FilePiece> pieces) {
    beginJob();
    job_->pieces = std::move(pieces);
    job_->isInPlace = areInPlace();
    const bool movesAtOnce = job_->pieces.size() == 1 && !job_->expected;
    // What has a known length shows by itself that it is complete.
    if (knownFile(record_.userSettings()).length == 0)
        markFinishing(job_->pieces.front().path);
    // Where to is decided as late as may be, for names, rules and folders change; but a file in one
    // piece is put together in no time, and a second way there and back would cost more than that.
    if (movesAtOnce)
        job_->target = paths_.finalDownloadTargetPath();
    runOnDisk(
        job_->pieces.front().path,
        [job = job_, movesAtOnce] {
            job->assemble();
            if (movesAtOnce && !job->assembly.isCancelled && !job->assembly.error)
                job->moveToTarget();
        },
        &DownloadFinisher::didAssemble);
}

void DownloadFinisher::didAssemble(const std::shared_ptr<Job>& job) {
    if (job->wasMoveTried) {
        didMove(job);
    } else if (job->isCancelled) {
        endCancelledJob();
    } else if (job->assembly.error) {
        endJob();
        delegate_.finishingDidFail(*job->assembly.error);
    } else if (job->expected) {
        verify(job);
    } else {
        move(job);
    }
}

void DownloadFinisher::verify(const std::shared_ptr<Job>& job) {
    job->isVerifying = true;
    delegate_.verificationDidBegin();
    runOnDisk(
        job->pieces.front().path,
        [job] {
            job->sum = sumOfFile(job->pieces.front().path, job->expected->algorithm, job->begunSum,
                                 job->isCancelled);
            job->begunSum.reset();
        },
        &DownloadFinisher::didVerify);
}

void DownloadFinisher::didVerify(const std::shared_ptr<Job>& job) {
    job->isVerifying = false;
    debugLog(record_, [&] {
        return u"%1 was added up as it came, but for what follows byte %2"_s.arg(
            record_.description(), QString::number(job->sum.before));
    });
    if (job->isCancelled) {
        endCancelledJob();
    } else if (!job->sum.checksum) {
        endJob();
        interrupt(WorkerErrorCode::CannotWrite,
                  u"%1 cannot be read for its checksum"_s.arg(record_.description()),
                  job->sum.error ? &*job->sum.error : nullptr);
    } else if (judgeChecksum(record_.userSettings(), *job->sum.checksum);
               checksumResult(record_.userSettings()) == ChecksumResult::Wrong) {
        // Nobody need ask the server whether it is whole.
        record_.userSettings().set(keys::expectedBytes, totalLength(job->pieces));
        endJob();
        delegate_.verificationFoundOtherFile();
    } else {
        job->origin.checksum = job->sum.checksum;
        move(job);
    }
}

void DownloadFinisher::move(const std::shared_ptr<Job>& job) {
    job->target = paths_.finalDownloadTargetPath();
    runOnDisk(
        job->pieces.front().path, [job] { job->moveToTarget(); }, &DownloadFinisher::didMove);
}

/// What is still being written about the parts must not get in the way of their going.
void DownloadFinisher::Job::assemble() {
    if (metadata)
        metadata->settle();
    assembly = assembleFile(pieces, isCancelled, *disk);
    if (isInPlace && !assembly.isCancelled && !assembly.error)
        dropPartJournals(pieces.front().path);
}

void DownloadFinisher::Job::moveToTarget() {
    const QString& source = pieces.front().path;
    wasMoveTried = true;
    // Before the move: from then on it is how the file is known again if we are stopped.
    writeOrigin(origin, source);
    moveError =
        target.isEmpty() ? platform::posixError(EACCES) : platform::moveFile(source, target);
    if (moveError && !isNoPlaceForFile(*moveError))
        return;
    const QString& path = moveError ? source : target;
    removePartialFileMarks(path);
    if (!origin.isKnownTo(path))
        writeOrigin(origin, path);
    if (!moveError) {
        platform::syncFolderOf(QFile::encodeName(target));
        removePartialFiles(source);
    }
}

/// The file was on its way when its row went: it waits where it came from, whole.
void DownloadFinisher::keepForWithdrawn(const Job& job) {
    const QString& source = job.pieces.front().path;
    if (!job.moveError) {
        QDir().mkpath(QFileInfo(source).path());
        if (::rename(QFile::encodeName(job.target).constData(),
                     QFile::encodeName(source).constData()) != 0) {
            platform::log(u"%1 stays, though its row is gone"_s.arg(job.target));
            return;
        }
    }
    record_.userSettings().set(keys::expectedBytes, totalLength(job.pieces));
}

void DownloadFinisher::didMove(const std::shared_ptr<Job>& job) {
    constexpr int mostAttempts = 8;
    const QString& source = job->pieces.front().path;
    const std::optional<platform::Error>& error = job->moveError;
    if (record_.isWithdrawn()) {
        keepForWithdrawn(*job);
        endJob();
        return;
    }
    if (record_.isBeingRemoved()) {
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
    const QString failure = error ? u"cannot move downloaded %1 to <%2> (%3)"_s.arg(
                                        record_.description(), job->target, error->text)
                                  : QString();
    if (error && !isNoPlaceForFile(*error)) {
        // Nobody need ask the server whether it is whole.
        record_.userSettings().set(keys::expectedBytes, totalLength(job->pieces));
        if (job->isCancelled)
            return endCancelledJob();
        endJob();
        return interrupt(WorkerErrorCode::CannotWrite, failure, &*error);
    }
    endJob();
    if (error) {
        platform::log(failure);
        record_.context().environment.beep();
        record_.userSettings().set(keys::leftBehind, true);
        endWithFile(movedOutOfPartialData(source, record_.context().environment));
        return;
    }
    paths_.setIntermediateDownloadTargetPath({});
    endWithFile(job->target);
}

void DownloadFinisher::cancel() {
    if (job_)
        job_->isCancelled = true;
    startsWhenIdle_ = false;
}

void DownloadFinisher::cancelForGood() {
    cancel();
    if (job_)
        job_->keptRecord = record_.shared_from_this();
}

void DownloadFinisher::endJob() {
    job_.reset();
    transfer_.thawFigures();
}

void DownloadFinisher::endCancelledJob() {
    endJob();
    delegate_.finishingWasCancelled(std::exchange(startsWhenIdle_, false));
}

void DownloadFinisher::endWithoutData() {
    transfer_.thawFigures();
    debugLog(record_, [&] {
        return u"%1 finished with no data (status code: %2)"_s.arg(
            record_.description(), record_.userSettings().string(keys::statusCode));
    });
    paths_.discardPartialData();
    delegate_.didFinishWithoutData();
}

void DownloadFinisher::endWithFile(const QString& path) {
    delegate_.didFinishWithFile(path);
    if (checksumResult(record_.userSettings()) != ChecksumResult::Wrong)
        openByRule(record_, path);
}

}  // namespace engine
