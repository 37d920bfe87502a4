#include "engine/transfer/transfer.h"

#include <sys/stat.h>
#include <QFile>
#include <QtMath>
#include <algorithm>
#include <iterator>

#include "engine/context.h"
#include "engine/paths/download_paths.h"
#include "engine/record/download_record.h"
#include "engine/settings.h"
#include "engine/transfer/resume_plan.h"
#include "links/paths/file_attributes.h"
#include "platform/base/log.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

constexpr platform::Seconds updateInterval = 0.1;

}  // namespace

Transfer::Transfer(DownloadRecord& record, DownloadPaths& paths, std::function<void()> changed)
    : record_(record), paths_(paths), changed_(std::move(changed)), sum_(record.context().disks) {}

Transfer::~Transfer() = default;

bool Transfer::contains(const Worker& worker) const {
    return std::any_of(_downloadWorkers.begin(), _downloadWorkers.end(),
                       [&](const Worker::Pointer& other) { return other.get() == &worker; });
}

void Transfer::replaceWorker(const Worker& worker, Worker::Pointer replacement) {
    const auto found =
        std::find_if(_downloadWorkers.begin(), _downloadWorkers.end(),
                     [&](const Worker::Pointer& other) { return other.get() == &worker; });
    if (found == _downloadWorkers.end())
        return;
    downloadedByReplaced_ += replacement->resumeByteOffset() - worker.resumeByteOffset();
    if (replacement->receivedBytes() < worker.receivedBytes())
        sum_.forget();
    *found = std::move(replacement);
}

void Transfer::insertWorkerBehind(const Worker& worker, Worker::Pointer added) {
    const auto found =
        std::find_if(_downloadWorkers.begin(), _downloadWorkers.end(),
                     [&](const Worker::Pointer& other) { return other.get() == &worker; });
    if (found != _downloadWorkers.end())
        _downloadWorkers.insert(found + 1, std::move(added));
}

void Transfer::removeWorker(const Worker& worker) {
    // Another one is going to write over what it had.
    sum_.forget();
    std::erase_if(_downloadWorkers,
                  [&](const Worker::Pointer& other) { return other.get() == &worker; });
}

void Transfer::dropWorkers(std::size_t firstDropped) {
    if (firstDropped >= _downloadWorkers.size())
        return;
    if (!frozenFigures_)
        sum_.forget();
    const auto first = _downloadWorkers.begin() + static_cast<std::ptrdiff_t>(firstDropped);
    const Workers dropped(std::make_move_iterator(first),
                          std::make_move_iterator(_downloadWorkers.end()));
    _downloadWorkers.resize(firstDropped);
}

OverallFigures Transfer::figures(const Worker* reporting) const {
    if (frozenFigures_)
        return *frozenFigures_;
    OverallFigures figures = overallFigures(
        _downloadWorkers, reporting, record_.userSettings().contains(keys::accelerationWorkers));
    figures.downloaded += downloadedByReplaced_;
    figures.offset -= downloadedByReplaced_;
    return figures;
}

std::vector<RunningPart> Transfer::parts() const {
    using State = RunningPart::State;
    std::vector<RunningPart> parts;
    for (std::size_t index = 0; index < _downloadWorkers.size(); ++index) {
        const Worker& worker = *_downloadWorkers[index];
        RunningPart part{worker.fractionStartByte(), 0, worker.receivedBytes(), worker.rate()};
        const bool isLast = index + 1 == _downloadWorkers.size();
        if (worker.endByte() > 0)
            part.length = worker.endByte() + 1 - part.start;
        else if (!isLast)
            part.length = _downloadWorkers[index + 1]->fractionStartByte() - part.start;
        else if (worker.expectedBytes() > 0)
            part.length = worker.resumeByteOffset() + worker.expectedBytes();
        part.state = worker.isDone()                                    ? State::Done
                     : worker.isServed()                                ? State::Served
                     : worker.status() == DQDownloadWorkerStatusRunning ? State::Running
                                                                        : State::Waiting;
        parts.push_back(part);
    }
    return parts;
}

void Transfer::resetProgress() {
    sum_.forget();
    lastFractionShown_.reset();
    _downloadFraction = 0;
    _shouldWriteMetadataToDownloadBundle = true;
}

qint64 Transfer::noteReceivedBytes(const Worker& worker) {
    if (!hasWorkers())
        return 0;
    const OverallFigures reached = figures(&worker);
    addUp(reached.total());
    // Nobody goes on with a file that came whole at once, nor sees how far it has got. Without a
    // length nothing says that it is whole.
    const bool cameAtOnce =
        reached.isLengthKnown && !lastFractionShown_ && reached.total() == reached.expected;
    if (!cameAtOnce)
        writeMetadataIfNecessary();
    if (reached.expected < 1)
        return 0;
    const double fraction =
        static_cast<double>(reached.total()) / static_cast<double>(reached.expected);
    if (fraction > _downloadFraction || reached.total() == reached.expected) {
        _downloadFraction = std::min(fraction, 1.0);
        const platform::Seconds now = record_.context().monotonicNow();
        if (!cameAtOnce) {
            if (!_lastDownloadUpdateDate || now - *_lastDownloadUpdateDate > updateInterval) {
                changed_();
                _lastDownloadUpdateDate = now;
            }
            if (reached.isLengthKnown)
                showFraction();
        }
        speed_.note(now, reached.downloaded);
    }
    return reached.truncation;
}

void Transfer::measureSpeedAnew() {
    speed_.beginAnew(record_.context().monotonicNow(), figures().downloaded);
}

/// From the first byte of the first worker's file on. What a worker counts has been written.
qint64 Transfer::bytesWithoutGap() const {
    const Worker& first = *_downloadWorkers.front();
    if (first.resumesInSeparateFile() && first.resumeByteOffset() > 0)
        return first.resumeByteOffset();
    qint64 length = first.receivedBytes();
    for (auto next = _downloadWorkers.begin() + 1; next != _downloadWorkers.end(); ++next) {
        const qint64 start = (*next)->fractionStartByte();
        // It may have gone further than where it is going to be cut off.
        if (length < start || !first.place().isShared())
            return std::min(length, start);
        length = start + (*next)->receivedBytes();
    }
    return length;
}

void Transfer::addUp(qint64 total) {
    if (total < sum_.nextLength())
        return;
    const QString path = _downloadWorkers.front()->place().file;
    const qint64 length = bytesWithoutGap();
    if (path.isEmpty() || length < sum_.nextLength())
        return;
    if (const auto expected = expectedChecksum(record_.userSettings()))
        sum_.follow(path, expected->algorithm, length);
}

void Transfer::prepareForFirstBytes() {
    if (!_shouldWriteMetadataToDownloadBundle || !paths_.hasIntermediateDownloadTargetPath())
        return;
    recordAccelerationWorkers();
    struct stat status {};
    if (stat(QFile::encodeName(paths_.intermediateDownloadTargetPath()).constData(), &status) == 0)
        record_.userSettings().set(keys::partialFileNumber, static_cast<qint64>(status.st_ino));
    if (record_.context().defaults.get(settings::storeMetadataLocally))
        paths_.writeFirstMetadata(paths_.archive(false));
}

void Transfer::writeMetadataIfNecessary() {
    if (_hasJustAddedAccelerationWorkers) {
        _hasJustAddedAccelerationWorkers = false;
        _shouldWriteMetadataToDownloadBundle = true;
    }
    if (!_shouldWriteMetadataToDownloadBundle || !paths_.hasIntermediateDownloadTargetPath())
        return;
    recordAccelerationWorkers();
    if (record_.context().defaults.get(settings::storeMetadataLocally))
        paths_.writeMetadata(paths_.archive(false));
    _shouldWriteMetadataToDownloadBundle = false;
}

void Transfer::recordAccelerationWorkers() {
    if (_downloadWorkers.size() < 2)
        return;
    std::vector<StoredFraction> fractions;
    for (auto worker = _downloadWorkers.begin() + 1; worker != _downloadWorkers.end(); ++worker)
        fractions.push_back(
            {(*worker)->targetPath(), (*worker)->fractionStartByte(), (*worker)->endByte()});
    record_.userSettings().set(keys::accelerationWorkers, archiveOfFractions(fractions));
}

/// On the container, where file managers and scripts can see it.
void Transfer::showFraction() {
    const int hundredths = qRound(_downloadFraction * 100);
    const bool isFirst = !lastFractionShown_;
    if (!isFirst && (!_canSetDownloadFractionAttribute || hundredths == *lastFractionShown_))
        return;
    lastFractionShown_ = hundredths;
    const QString container = paths_.downloadContainerPath();
    if (container.isEmpty() || !platform::pathExists(container))
        return;
    _canSetDownloadFractionAttribute =
        links::setFractionCompleted(container, QString::number(hundredths / 100.0, 'f', 2));
    if (!_canSetDownloadFractionAttribute)
        platform::log(
            u"cannot set fraction completed for download: %1"_s.arg(record_.description()));
}

}  // namespace engine
