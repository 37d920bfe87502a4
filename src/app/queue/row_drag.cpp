#include "app/queue/row_drag.h"

#include <algorithm>

#include "app/rows/row_vanishing.h"
#include "app/settings.h"

namespace app {

RowDrag::RowDrag(engine::DownloadQueue& queue, QueueView& view, const RowVanishing& vanishing,
                 const platform::UserDefaults& defaults)
    : queue_(queue), view_(view), vanishing_(vanishing), defaults_(defaults) {}

bool RowDrag::showsQueueOrder() const {
    return defaults_.get(settings::sortingCriterion) == criterion::dateAdded &&
           !view_.isFiltering();
}

bool RowDrag::canDragRows(const QList<qsizetype>& rows) {
    const QueueView::View shown = view_.sortedAndFilteredDownloads();
    return !rows.isEmpty() && showsQueueOrder() &&
           std::all_of(rows.begin(), rows.end(), [&](qsizetype row) {
               return row >= 0 && row < static_cast<qsizetype>(shown->size()) &&
                      !vanishing_.isVanishing(*(*shown)[static_cast<std::size_t>(row)]);
           });
}

bool RowDrag::canDropRows(const Downloads& dragged, qsizetype row) {
    if (dragged.empty() || !showsQueueOrder()) {
        return false;
    }
    const std::optional<qsizetype> first = view_.rowOf(*dragged.front());
    const std::optional<qsizetype> last = view_.rowOf(*dragged.back());
    if (!first) {
        return false;
    }
    const bool areConsecutive = last && *last - *first < static_cast<qsizetype>(dragged.size());
    return !areConsecutive || *first > row || *last + 1 < row;
}

bool RowDrag::dropRows(const Downloads& dragged, qsizetype row) {
    return queue_.move(dragged, row, defaults_.get(settings::invertSorting));
}

}  // namespace app
