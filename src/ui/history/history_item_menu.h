#pragma once

#include <QMenu>

#include "app/history/history_actions.h"
#include "app/history/history_entry.h"

namespace ui {

/// What can be done with one entry of the history. Filled each time it opens, since that depends
/// on whether the file is still there.
class HistoryItemMenu final : public QMenu {
    Q_OBJECT

public:
    HistoryItemMenu(app::HistoryEntry entry, const app::HistoryActions& actions, QWidget* parent);

    /// Opens the file. False: it is gone.
    bool openFile() const;

private:
    void fill();

    const app::HistoryEntry entry_;
    const app::HistoryActions actions_;
};

}  // namespace ui
