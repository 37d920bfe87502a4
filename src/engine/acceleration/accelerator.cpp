#include "engine/acceleration/accelerator.h"

#include <QFile>
#include <algorithm>

#include "engine/acceleration/acceleration_settings.h"
#include "engine/context.h"
#include "engine/paths/download_paths.h"
#include "engine/paths/intermediate_files.h"
#include "engine/paths/part_journal.h"
#include "engine/paths/part_layout.h"
#include "engine/record/download_record.h"
#include "engine/record/known_file.h"
#include "engine/transfer/resume_plan.h"
#include "engine/workers/debug_log.h"
#include "links/paths/path_components.h"
#include "platform/base/log.h"
#include "platform/net/status_codes.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

using Worker = Transfer::Worker;

AccelerationSettings settingsOf(const Transfer& transfer) {
    return AccelerationSettings(transfer.record().context().defaults);
}

bool servesRanges(const WorkerResponse& response) {
    return response.headers &&
           response.headers->value(u"Accept-Ranges"_s).value_or(QString()).toLower() == u"bytes";
}

/// Whether everything but the size speaks for a split.
bool mayAccelerate(Transfer& transfer, const WorkerResponse& response) {
    if (response.statusCode != platform::status::ok ||
        transfer.hasFailedToAddAccelerationWorkers() || transfer.workers().size() != 1 ||
        !settingsOf(transfer).acceleratesHost(transfer.record().queueRelevantHost()))
        return false;
    if (servesRanges(response))
        return true;
    transfer.record().userSettings().set(keys::rangesDisabled, true);
    return false;
}

/// Of a download that is about to be split.
PartLayout layoutForParts(const Transfer& transfer, const QString& primaryPath) {
    return settingsOf(transfer).writesPartsInPlace() &&
                   keepsHoles(links::stringByDeletingLastPathComponent(primaryPath))
               ? PartLayout::InPlace
               : PartLayout::Apart;
}

Worker::Pointer makeFractionWorker(const Worker::Pointer& primary, const StoredFraction& fraction) {
    const PartPlace first = primary->place();
    Worker::Pointer worker = Worker::downloadWorkerWithDownloadWorker(primary);
    worker->setTargetPath(fraction.target);
    worker->setPlace(placeOfPart(first.isShared() ? PartLayout::InPlace : PartLayout::Apart,
                                 first.file, fraction.target, fraction.start));
    worker->setFractionStartByte(fraction.start);
    worker->setEndByte(fraction.end);
    return worker;
}

/// False: nothing more is to be added.
bool addFractionWorker(Transfer& transfer, const Worker::Pointer& primary,
                       const StoredFraction& fraction, const platform::Url& url) {
    const Worker::Pointer worker = makeFractionWorker(primary, fraction);
    worker->request().goTo(url);
    worker->request().rangeValidator = knownFile(transfer.record().userSettings()).rangeValidator();
    // An empty file now, so that the parts and their files agree however early we are stopped.
    if (!worker->claimTargetPath() || !worker->start()) {
        platform::log(u"%1 cannot start acceleration worker %2"_s.arg(
            transfer.record().description(), worker->description()));
        return false;
    }
    transfer.addWorker(worker);
    debugLog(transfer.record(), [&] {
        return u"%1 added acceleration worker %2 at offset %3"_s.arg(
            transfer.record().description(), worker->description(),
            QString::number(fraction.start));
    });
    return true;
}

/// From where the last answer came, as on a resume.
void askForPart(const Transfer& transfer, Worker& worker) {
    const UserSettings& settings = transfer.record().userSettings();
    if (const auto url = platform::Url::parse(settings.string(keys::responseURL));
        url && !url->isEmpty())
        worker.request().goTo(*url);
    worker.request().rangeValidator = knownFile(settings).rangeValidator();
}

/// A first worker that reads the whole file ends, in a file that others write to, where theirs
/// begins.
void boundFirstWorker(Transfer& transfer) {
    Worker& first = *transfer.workers().front();
    if (!first.place().isShared() || first.endByte() > 0 || first.isDone())
        return;
    const qint64 end =
        transfer.workers().size() >= 2 ? transfer.workers()[1]->fractionStartByte() : 0;
    if (!first.setBound(end))
        platform::log(
            u"%1 has a first worker beyond its end"_s.arg(transfer.record().description()));
}

/// Nobody is going to join the others' files, and a resume must not take them for parts of the
/// file.
void goOnWithFirstWorker(Transfer& transfer) {
    transfer.dropWorkers(1);
    transfer.record().userSettings().remove(keys::accelerationWorkers);
    removeFragments(transfer.paths().intermediateDownloadTargetPath());
    boundFirstWorker(transfer);
    transfer.setShouldWriteMetadata();
}

/// The first worker reads on into the part behind it if nobody has begun with that, which saves a
/// connection where they are scarce.
bool takeOverParkedPart(Transfer& transfer) {
    const Worker::Pointer next = transfer.workers()[1];
    if (next->status() != DQDownloadWorkerStatusIdle)
        return false;
    transfer.removeWorker(*next);
    boundFirstWorker(transfer);
    // An empty journal does no harm, while a record that names it may be what a kill leaves.
    if (!next->place().isShared())
        QFile::remove(next->targetPath());
    if (transfer.workers().size() < 2)
        transfer.record().userSettings().remove(keys::accelerationWorkers);
    else
        transfer.recordAccelerationWorkers();
    transfer.setShouldWriteMetadata();
    return true;
}

/// Where others follow in the same file, nobody waits until the first worker comes to a part that
/// waits: it must not stop there for a moment, and what it then wrote would pass the main thread.
void takeOverParkedPartsInPlace(Transfer& transfer) {
    const Worker& first = *transfer.workers().front();
    while (first.place().isShared() && first.endByte() == 0 &&
           first.status() == DQDownloadWorkerStatusRunning && transfer.workers().size() >= 2 &&
           takeOverParkedPart(transfer)) {
    }
}

}  // namespace

void accelerateIfPossible(Transfer& transfer, const Worker::Pointer& primary,
                          const WorkerResponse& response, qint64 connections) {
    if (!mayAccelerate(transfer, response) || primary->expectedBytes() <= 0)
        return;
    const qint64 minimumSize = settingsOf(transfer).acceleratorFractionMinimumSize();
    const qint64 channels = std::min(settingsOf(transfer).accelerationFactor(), connections);
    if (splitIntoFractions(primary->expectedBytes(), minimumSize, channels, {}).empty())
        return;
    const QString path = transfer.paths().chooseIntermediateDownloadTargetPath();
    if (primary->targetPath().isEmpty())
        primary->setTargetPath(path);
    // What lies here under these names was left behind by a download that is gone.
    removeFragments(path);
    QFile::remove(accelerationFragmentPath(path, 0));
    primary->setPlace(placeOfPart(layoutForParts(transfer, path), path, path, 0));
    if (!primary->claimTargetPath())
        return;
    for (const StoredFraction& fraction :
         splitIntoFractions(primary->expectedBytes(), minimumSize, channels, path)) {
        if (!addFractionWorker(transfer, primary, fraction, response.url)) {
            dropAcceleration(transfer);
            return;
        }
    }
    transfer.recordAccelerationWorkers();
    boundFirstWorker(transfer);
}

bool addResumedWorkers(Transfer& transfer, const ResumePlan& plan, qint64 connections) {
    const Worker::Pointer primary = transfer.workers().front();
    qint64 open = primary->isDone() ? 0 : 1;
    for (std::size_t index = 0; index < plan.fractions.size(); ++index) {
        const StoredFraction& fraction = plan.fractions[index];
        const qint64 size = plan.fractionSizes[index];
        const Worker::Pointer worker = makeFractionWorker(primary, fraction);
        if (size >= fraction.length()) {
            worker->setFinishedBefore(fraction.length());
        } else {
            worker->setResumeByteOffset(size);
            if (open++ < connections && !worker->start()) {
                platform::log(u"%1 cannot resume acceleration worker %2"_s.arg(
                    transfer.record().description(), worker->description()));
                transfer.dropWorkers();
                return false;
            }
        }
        transfer.addWorker(worker);
        debugLog(transfer.record(), [&] {
            return u"%1 resuming acceleration worker %2 at offset %3 + %4 = %5 (=> %6)"_s.arg(
                transfer.record().description(), worker->description(),
                QString::number(fraction.start), QString::number(size),
                QString::number(fraction.start + size), QString::number(fraction.end));
        });
    }
    return true;
}

void truncateFirstWorker(Transfer& transfer, qint64 offset) {
    const Worker::Pointer first = transfer.workers().front();
    if (first->endByte() == 0 && takeOverParkedPart(transfer))
        return;
    if (first->truncateAtOffset(offset)) {
        debugLog(transfer.record(), [&] {
            return u"%1 truncated first worker at offset %2"_s.arg(transfer.record().description())
                .arg(offset);
        });
        return;
    }
    // One with an end of its own stops there anyway.
    if (first->endByte() > 0)
        return;
    platform::log(u"%1 cannot truncate first worker"_s.arg(transfer.record().description()));
    goOnWithFirstWorker(transfer);
}

bool hasOthersRunning(const Transfer& transfer, const Worker& worker) {
    return std::any_of(
        transfer.workers().begin(), transfer.workers().end(), [&](const Worker::Pointer& other) {
            return other.get() != &worker && other->status() == DQDownloadWorkerStatusRunning;
        });
}

bool parkRefusedWorker(Transfer& transfer, Worker& worker) {
    if (!hasOthersRunning(transfer, worker))
        return false;
    const Worker::Pointer waiting =
        Worker::downloadWorkerWithDownloadWorker(worker.shared_from_this());
    waiting->setFractionStartByte(worker.fractionStartByte());
    waiting->setResumeByteOffset(worker.resumeByteOffset());
    waiting->setEndByte(worker.endByte());
    waiting->setPlace(worker.place());
    if (worker.isReplacement())
        waiting->setReplacement();
    transfer.replaceWorker(worker, waiting);
    takeOverParkedPartsInPlace(transfer);
    debugLog(transfer.record(), [&] {
        return u"%1 lets acceleration worker %2 wait for a free connection"_s.arg(
            transfer.record().description(), waiting->description());
    });
    return true;
}

bool startParkedWorker(Transfer& transfer) {
    for (const Worker::Pointer& worker : transfer.workers()) {
        if (worker->status() == DQDownloadWorkerStatusIdle)
            return worker->start();
    }
    return true;
}

bool splitPart(Transfer& transfer, std::size_t part, qint64 offset) {
    const Worker::Pointer whole = transfer.workers()[part];
    const RunningPart before = transfer.parts()[part];
    const qint64 boundBefore = whole->bound(), endBefore = whole->endByte();
    if (transfer.workers().size() >= mostFractions || !whole->place().isShared() ||
        !whole->setBound(offset))
        return false;
    const Worker::Pointer rest =
        makeFractionWorker(transfer.workers().front(),
                           {freeFragmentPath(transfer.paths().intermediateDownloadTargetPath()),
                            before.start + offset, before.start + before.length - 1});
    askForPart(transfer, *rest);
    // From here on a resume finds two parts.
    const auto journal = PartJournal::open(rest->targetPath(), rest->fractionStartByte());
    if (!journal || !journal->setReceived(0) || !rest->claimTargetPath() || !rest->start()) {
        QFile::remove(rest->targetPath());
        static_cast<void>(whole->setBound(boundBefore));
        return false;
    }
    if (endBefore > 0)
        whole->setEndByte(rest->fractionStartByte() - 1);
    transfer.insertWorkerBehind(*whole, rest);
    transfer.recordAccelerationWorkers();
    transfer.setShouldWriteMetadata();
    debugLog(transfer.record(), [&] {
        return u"%1 lets %2 take over %3 bytes from %4"_s.arg(
            transfer.record().description(), rest->description(),
            QString::number(before.length - offset), whole->description());
    });
    return true;
}

void replaceWorker(Transfer& transfer, const Worker& worker) {
    const auto found =
        std::find_if(transfer.workers().begin(), transfer.workers().end(),
                     [&](const Worker::Pointer& other) { return other.get() == &worker; });
    const RunningPart part =
        transfer.parts()[static_cast<std::size_t>(found - transfer.workers().begin())];
    Worker::Pointer slow = *found;
    const Worker::Pointer fresh = Worker::downloadWorkerWithDownloadWorker(slow);
    fresh->setPlace(slow->place());
    fresh->setFractionStartByte(part.start);
    fresh->setResumeByteOffset(part.received);
    fresh->setEndByte(part.start + part.length - 1);
    fresh->setReplacement();
    askForPart(transfer, *fresh);
    debugLog(transfer.record(), [&] {
        return u"%1 gives up %2 for %3, which begins at %4"_s
            .arg(transfer.record().description(), slow->description(), fresh->description())
            .arg(part.start + part.received);
    });
    transfer.replaceWorker(*slow, fresh);
    // It closes its file, so that the other one can open it.
    slow.reset();
    static_cast<void>(fresh->start());
}

void dropAcceleration(Transfer& transfer) {
    transfer.setHasFailedToAddAccelerationWorkers();
    transfer.record().userSettings().set(keys::accelerationFailed, true);
    goOnWithFirstWorker(transfer);
}

}  // namespace engine
