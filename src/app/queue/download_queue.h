#pragma once

#include <QRandomGenerator>
#include <functional>
#include <optional>

#include "app/queue/download_order.h"
#include "app/queue/queue_tally.h"
#include "engine/record/status.h"

namespace app {

/// Whether any element matches the mask; with mask 0, whether there is one.
[[nodiscard]] bool anyDownloadFromCollectionMatchesStatusMask(const Downloads& collection,
                                                              engine::StatusMask mask);
/// The elements that match, in the collection's order; with mask 0 all.
[[nodiscard]] Downloads downloadsFromCollectionMatchingStatusMask(const Downloads& collection,
                                                                  engine::StatusMask mask);

/// Every download that exists, in the order in which they are admitted and saved. Downloads are
/// told apart by identity. Main thread.
class DownloadQueue {
public:
    /// Called after each change of membership or order.
    explicit DownloadQueue(std::function<void()> changed = [] {});

    [[nodiscard]] const Downloads& downloads() const { return _downloads; }
    [[nodiscard]] const QueueTally& tally() const { return tally_; }
    [[nodiscard]] std::optional<std::size_t> indexOf(const engine::DQDownload& download) const;

    void append(engine::DownloadPtr download);
    /// False: it was not in the queue.
    bool remove(const engine::DQDownload& download);
    /// Removes those for which `matches` answers true. How many there were.
    std::size_t removeIf(const std::function<bool(engine::DQDownload&)>& matches);
    /// To be called when a download's status has changed, for the tally.
    void reflectStatus(const engine::DQDownload& download) { tally_.reflectStatus(download); }
    /// Puts another one in its place. False: it was not in the queue.
    bool replace(const engine::DQDownload& download, engine::DownloadPtr replacement);

    void reverse();
    void shuffle(QRandomGenerator& random);
    void sortByCriterion(qint64 criterion);
    /// Moves those of `dragged` that are in the queue, together and in their order, to before the
    /// row `row` of a list that shows the queue, upside down if `inverted`. False: nothing moved.
    bool move(const Downloads& dragged, qsizetype row, bool inverted);

private:
    Downloads _downloads;
    QueueTally tally_;
    std::function<void()> changed_;
};

}  // namespace app
