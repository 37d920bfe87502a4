#pragma once

#include <QMenu>
#include <vector>

#include "app/history/history_actions.h"
#include "app/history/history_listing.h"

namespace ui {

class HistoryIcons;

/// A menu with entries of the history. Each has a submenu of what can be done with it; choosing
/// the entry itself opens the file, if there still is one.
class HistoryListMenu : public QMenu {
    Q_OBJECT

public:
    HistoryListMenu(const app::HistoryActions& actions, HistoryIcons& icons, QWidget* parent);

protected:
    /// Of very many only the first are added, and how many more there are.
    void addEntries(const QList<app::HistoryEntry>& history, const std::vector<qsizetype>& indexes);
    void removeItems(const QList<QAction*>& items);
    [[nodiscard]] const app::HistoryActions& historyActions() const { return actions_; }
    [[nodiscard]] HistoryIcons& icons() const { return icons_; }

    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool choose(QAction* item);

    const app::HistoryActions actions_;
    HistoryIcons& icons_;
};

/// The entries of one day, put in when it opens for the first time.
class HistoryDayMenu final : public HistoryListMenu {
    Q_OBJECT

public:
    HistoryDayMenu(QList<app::HistoryEntry> history, app::HistoryListing::Day day,
                   const app::HistoryActions& actions, HistoryIcons& icons, QWidget* parent);

private:
    void fill();

    const QList<app::HistoryEntry> history_;
    const app::HistoryListing::Day day_;
};

}  // namespace ui
