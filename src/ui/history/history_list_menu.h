#pragma once

#include <QMenu>
#include <functional>
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
    /// As many as fit on a screen, in several columns. What is beyond is only counted.
    static constexpr std::size_t mostItems = 100;

    void addEntries(const QList<app::HistoryEntry>& history, const std::vector<qsizetype>& indexes);
    /// Notes how many there are besides those that are shown, if any.
    void addRest(std::size_t count);
    void removeItems(const QList<QAction*>& items);
    /// Adds and removes items with the menu laid out once at the end, also if it is open.
    void exchangeItems(const std::function<void()>& exchange);
    [[nodiscard]] const app::HistoryActions& historyActions() const { return actions_; }
    [[nodiscard]] HistoryIcons& icons() const { return icons_; }

    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void actionEvent(QActionEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    bool choose(QAction* item);
    void fitToScreen();

    const app::HistoryActions actions_;
    HistoryIcons& icons_;
    bool isExchangingItems_ = false;
    QPoint shownAt_;
};

/// The entries of one day, put in when it opens for the first time.
class HistoryDayMenu final : public HistoryListMenu {
    Q_OBJECT

public:
    HistoryDayMenu(const QString& title, QList<app::HistoryEntry> history,
                   std::vector<qsizetype> indexes, const app::HistoryActions& actions,
                   HistoryIcons& icons, QWidget* parent);

private:
    void fill();

    const QList<app::HistoryEntry> history_;
    const std::vector<qsizetype> indexes_;
};

}  // namespace ui
