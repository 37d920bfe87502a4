#pragma once

#include <QStringList>
#include <memory>
#include <unordered_map>

#include "app/queue/download_order.h"
#include "app/queue/state_filter.h"
#include "engine/queue/download_queue.h"
#include "platform/base/user_defaults.h"

namespace app {

/// The queue as a list shows it: sorted, perhaps upside down, and filtered. Main thread.
///
/// The views are put together when they are next asked for after something changed, and replaced
/// as a whole, so that one that was handed out stays as it was.
class QueueView {
public:
    using View = std::shared_ptr<const Downloads>;

    QueueView(const engine::DownloadQueue& queue, const platform::UserDefaults& defaults);
    ~QueueView();

    /// Split at whitespace into the terms that a download must match.
    void setFilterText(const QString& text);
    void setStateFilter(const StateFilter& filter);
    [[nodiscard]] const StateFilter& stateFilter() const { return states_; }
    /// Whether rows may be hidden.
    [[nodiscard]] bool isFiltering() const { return !terms_.isEmpty() || states_.isOn(); }

    /// The order is wanted anew: membership, queue order or a setting changed.
    void invalidate() { isStale_ = true; }

    /// The same object while nothing is filtered.
    [[nodiscard]] const View& sortedDownloads();
    [[nodiscard]] const View& sortedAndFilteredDownloads();
    /// How many the filter hid when the views were last put together.
    [[nodiscard]] qsizetype numberOfHiddenDownloads() const;
    /// The row in `sortedAndFilteredDownloads`. Nothing: not shown.
    [[nodiscard]] std::optional<qsizetype> rowOf(const engine::DQDownload& download);

    /// A download has changed. Whether the shown rows are other ones or in another order now. That
    /// a hidden download matches the text now is answered with the next change of a shown one, and
    /// at once where rows are shown by how they stand. Costs nothing that grows with the queue
    /// unless rows move.
    [[nodiscard]] bool reflectChange(const engine::DQDownload& download);

private:
    struct Entry {
        std::unique_ptr<SortKey> key;  ///< Null while the order needs none.
        std::size_t queueIndex = 0;
        qsizetype row = -1;  ///< -1: hidden.
    };
    using Entries = std::unordered_map<const engine::DQDownload*, Entry>;
    /// What the views were made with.
    struct Form {
        qint64 criterion = 0;
        bool inverted = false;
        bool checksURL = false;
        friend bool operator==(const Form&, const Form&) = default;
    };

    [[nodiscard]] Form currentForm() const;
    void sortAndFilterDownloads();
    void updateEntries();
    [[nodiscard]] Downloads sorted() const;
    [[nodiscard]] Downloads filtered(const Downloads& downloads) const;
    [[nodiscard]] bool matchesFilter(const engine::DQDownload& download) const;
    void updateKey(Entry& entry, const engine::DQDownload& download) const;
    [[nodiscard]] bool isAheadOf(const Entry& a, const Entry& b) const;
    [[nodiscard]] bool isInPlace(const Entry& entry) const;

    const engine::DownloadQueue& queue_;
    const platform::UserDefaults& defaults_;
    QStringList terms_;
    StateFilter states_;
    Form form_;
    bool isStale_ = true;
    bool hiddenOneMatches_ = false;
    Entries entries_;
    View _sortedDownloads;
    View _sortedAndFilteredDownloads;
};

}  // namespace app
