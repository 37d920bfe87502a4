#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "engine/transfer/progress_figures.h"
#include "engine/transfer/running_part.h"
#include "engine/transfer/running_sum.h"
#include "engine/workers/download_worker_prototype.h"

namespace engine {

class DownloadPaths;
class DownloadRecord;

/// The live workers of a download and what they have achieved. The first worker has index 0; the
/// others follow in the order of their offsets.
class Transfer {
public:
    using Worker = DQDownloadWorkerPrototype;
    using Workers = std::vector<Worker::Pointer>;

    /// `changed` is called when it has come further, ten times a second at most.
    Transfer(DownloadRecord& record, DownloadPaths& paths, std::function<void()> changed);
    ~Transfer();

    [[nodiscard]] DownloadRecord& record() const { return record_; }
    [[nodiscard]] DownloadPaths& paths() const { return paths_; }

    [[nodiscard]] const Workers& workers() const { return _downloadWorkers; }
    [[nodiscard]] bool hasWorkers() const { return !_downloadWorkers.empty(); }
    [[nodiscard]] bool isFirst(const Worker& worker) const {
        return hasWorkers() && _downloadWorkers.front().get() == &worker;
    }
    /// Whether it still is one of ours; a report of any other comes too late to mean anything.
    [[nodiscard]] bool contains(const Worker& worker) const;
    void addWorker(Worker::Pointer worker) { _downloadWorkers.push_back(std::move(worker)); }
    /// Right behind another one, whose part goes on there.
    void insertWorkerBehind(const Worker& worker, Worker::Pointer added);
    /// The place of a worker is taken by another one, which goes on from what it has.
    void replaceWorker(const Worker& worker, Worker::Pointer replacement);
    void removeWorker(const Worker& worker);
    /// Stops the workers from `firstDropped` on.
    void dropWorkers(std::size_t firstDropped = 0);

    /// While the file is being put together, after the workers are gone, what they achieved.
    [[nodiscard]] OverallFigures figures(const Worker* reporting = nullptr) const;
    void freezeFigures() { frozenFigures_ = figures(); }
    void thawFigures() {
        frozenFigures_.reset();
        sum_.forget();
    }
    /// What the file adds up to so far, if anybody wants to know and for whoever puts it together.
    /// Null: nothing was added up.
    [[nodiscard]] std::shared_ptr<SumReader> takeSum() { return sum_.take(); }
    /// What each connection is at, in the order of the file. For showing, as for deciding.
    [[nodiscard]] std::vector<RunningPart> parts() const;
    [[nodiscard]] const SpeedMeter& speed() const { return speed_; }
    [[nodiscard]] double downloadFraction() const { return _downloadFraction; }

    /// A transfer begins at the first byte, or goes on.
    void resetProgress();
    /// Its speed is going to be another one.
    void measureSpeedAnew();
    void startSpeedMeter() {
        speed_ = {};
        downloadedByReplaced_ = 0;
    }
    /// To be called before a worker stores its first block.
    void prepareForFirstBytes();
    /// To be called for each block. Answers where the worker is to be cut off; 0: nowhere.
    [[nodiscard]] qint64 noteReceivedBytes(const Worker& worker);

    /// What the container of the partial data says is out of date.
    void setShouldWriteMetadata() { _shouldWriteMetadataToDownloadBundle = true; }
    void setHasJustAddedAccelerationWorkers() { _hasJustAddedAccelerationWorkers = true; }
    /// Blocks all further attempts of this record.
    [[nodiscard]] bool hasFailedToAddAccelerationWorkers() const {
        return _hasFailedToAddAccelerationWorkers;
    }
    void setHasFailedToAddAccelerationWorkers() { _hasFailedToAddAccelerationWorkers = true; }
    /// Puts the parts of all workers but the first into the settings, if there are any.
    void recordAccelerationWorkers();

private:
    [[nodiscard]] qint64 bytesWithoutGap() const;
    void addUp(qint64 total);
    void writeMetadataIfNecessary();
    void showFraction();

    DownloadRecord& record_;
    DownloadPaths& paths_;
    const std::function<void()> changed_;
    Workers _downloadWorkers;
    SpeedMeter speed_;
    RunningSum sum_;
    qint64 downloadedByReplaced_ = 0;  ///< Which their successors count as there before.
    std::optional<OverallFigures> frozenFigures_;
    std::optional<platform::Seconds> _lastDownloadUpdateDate;
    /// What the container's attribute says, in hundredths. Nothing: it says nothing yet.
    std::optional<int> lastFractionShown_;
    double _downloadFraction = 0;
    bool _canSetDownloadFractionAttribute = false;
    bool _shouldWriteMetadataToDownloadBundle = true;
    bool _hasJustAddedAccelerationWorkers = false;
    bool _hasFailedToAddAccelerationWorkers = false;
};

}  // namespace engine
