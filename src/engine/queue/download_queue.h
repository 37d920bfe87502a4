#pragma once

#include <QString>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_set>
#include <vector>

#include "engine/context.h"
#include "engine/finishing/finished_files.h"
#include "engine/lifecycle/download.h"
#include "engine/paths/file_access.h"
#include "engine/queue/auto_resume.h"
#include "engine/queue/queue_admission.h"
#include "engine/queue/queue_owner.h"
#include "engine/queue/queue_tally.h"
#include "engine/workers/throttle.h"

namespace engine {

using Downloads = std::vector<DownloadPtr>;

/// Whether any element matches the mask; with mask 0, whether there is one.
[[nodiscard]] bool anyDownloadFromCollectionMatchesStatusMask(const Downloads& collection,
                                                              StatusMask mask);
/// The elements that match, in the collection's order; with mask 0 all.
[[nodiscard]] Downloads downloadsFromCollectionMatchingStatusMask(const Downloads& collection,
                                                                  StatusMask mask);

/// Every download that exists, in the order in which they are admitted and saved: makes the
/// records, counts them, and lets them start. Downloads are told apart by identity. Main thread.
class DownloadQueue final : private DownloadHost {
public:
    /// All of it outlives the queue.
    struct Surroundings {
        platform::UserDefaults& defaults;
        platform::RunLoop& loop;
        platform::Disks& disks;
        const Environment& environment;
        const Rules& rules;
    };

    DownloadQueue(const Surroundings& surroundings, QueueOwner& owner);
    ~DownloadQueue() override;
    DownloadQueue(const DownloadQueue&) = delete;
    DownloadQueue& operator=(const DownloadQueue&) = delete;

    [[nodiscard]] const Context& context() const { return context_; }
    /// The collection itself. Whoever starts, stops or removes downloads during a walk must walk
    /// over a copy.
    [[nodiscard]] const Downloads& downloads() const { return _downloads; }
    [[nodiscard]] Downloads downloadsMatchingStatusMask(StatusMask mask) const;
    [[nodiscard]] const QueueTally& tally() const { return tally_; }
    [[nodiscard]] QueueAdmission& admission() { return admission_; }
    [[nodiscard]] Throttle& throttle() { return throttle_; }

    [[nodiscard]] bool contains(const DQDownload& download) const;
    [[nodiscard]] std::optional<std::size_t> indexOf(const DQDownload& download) const;

    /// What is set on a new record before it can be started or shown.
    using Setup = std::function<void(DQDownload&)>;
    /// A new record at the end of the queue, waiting for its turn or else paused. Null: there is no
    /// address.
    DownloadPtr add(const std::optional<platform::Url>& url, bool addToQueue,
                    const Setup& setup = {});
    /// A new record for the same address in the place of another one, which is dropped. Null: that
    /// one is not in the queue.
    DownloadPtr replace(DQDownload& download, const platform::Url& url, bool addToQueue,
                        const Setup& setup = {});
    /// The same for its own address, going on with what it has kept of the file.
    DownloadPtr retry(DQDownload& download, bool addToQueue);
    /// False: it was not in the queue.
    bool remove(DQDownload& download);
    /// Removes those for which `matches` answers true. How many there were.
    std::size_t removeIf(const std::function<bool(DQDownload&)>& matches);
    /// Puts back downloads that were taken out, in ascending order of the indexes that they are to
    /// have among themselves and those present of which `counts` answers true.
    struct Place {
        DownloadPtr download;
        std::size_t index = 0;
    };
    void putBack(const std::vector<Place>& places,
                 const std::function<bool(const DQDownload&)>& counts);
    /// The same downloads in another order.
    void setOrder(Downloads order);
    /// Moves those of `dragged` that are in the queue, together and in their order, to before the
    /// row `row` of a list that shows the queue, upside down if `inverted`. False: nothing moved.
    bool move(const Downloads& dragged, qsizetype row, bool inverted);

    /// While one lives, changes belong together: the owner hears of each of them, and of the end.
    class Batch {
    public:
        explicit Batch(DownloadQueue& queue) : queue_(queue) { ++queue_.batches_; }
        ~Batch() { queue_.endBatch(); }
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

    private:
        DownloadQueue& queue_;
    };
    [[nodiscard]] bool isInBatch() const { return batches_ > 0; }
    /// The end of the batch is to be told even if no download changes in it.
    void touchBatch() { hasBatchChanged_ = true; }

private:
    void statusDidChange(const StatusChange& change) override;
    void downloadDidChange(DQDownload& download) override;
    void placeDidChange() override { admission_.invalidateQueuedAndDownloadingDownloads(); }
    void downloadWasRemoved(DQDownload& download) override;
    [[nodiscard]] std::optional<platform::Seconds> noteFailure() override;
    void serverDidRefuse(const DQDownload& download, const Refusal& refusal) override;
    void releaseServer(const DQDownload& download) override;
    void connectionDidEnd(const DQDownload& download) override;
    [[nodiscard]] qint64 connectionsFor(const DQDownload& download) override;
    void openURLsOfPage(const std::vector<platform::Url>& urls,
                        const QStringList& pageChain) override;
    [[nodiscard]] FinishedFiles& finishedFiles() override { return finishedFiles_; }
    void volumeIsMissing(DQDownload& download) override;
    void fileWasNotThrownAway(const QString& path) override;

    [[nodiscard]] DownloadPtr born(const platform::Url& url, const Setup& setup);
    /// It has its place already.
    void enter(const DownloadPtr& download, bool addToQueue);
    void forget(const DownloadPtr& download);
    void membershipDidChange();
    void endBatch();

    QueueOwner& owner_;
    FileAccess fileAccess_;
    Throttle throttle_;
    AutoResume autoResume_;
    FinishedFiles finishedFiles_;
    Context context_;
    QueueTally tally_;
    QueueAdmission admission_;
    Downloads _downloads;
    std::unordered_set<const DQDownload*> members_;
    int batches_ = 0;
    bool hasBatchChanged_ = false;
};

}  // namespace engine
