#pragma once

#include <QList>

#include "app/queue/queue_view.h"

namespace app {

class RowVanishing;

/// Putting the queue into another order by dragging rows of its list, which must then show the
/// queue's own order (either way up) and all of it. Main thread.
class RowDrag {
public:
    RowDrag(engine::DownloadQueue& queue, QueueView& view, const RowVanishing& vanishing,
            const platform::UserDefaults& defaults);

    [[nodiscard]] bool canDragRows(const QList<qsizetype>& rows);
    /// Whether dropping them above `row` (or behind the last one) would change anything.
    [[nodiscard]] bool canDropRows(const Downloads& dragged, qsizetype row);
    /// False: nothing moved.
    bool dropRows(const Downloads& dragged, qsizetype row);

private:
    [[nodiscard]] bool showsQueueOrder() const;

    engine::DownloadQueue& queue_;
    QueueView& view_;
    const RowVanishing& vanishing_;
    const platform::UserDefaults& defaults_;
};

}  // namespace app
