#pragma once

#include "ui/history/history_icons.h"
#include "ui/history/history_list_menu.h"

namespace app {
class DQHistorian;
class DQMainController;
}  // namespace app

namespace platform {
class UserDefaults;
}

namespace engine {
struct Context;
}

namespace ui {

class HistorySearch;

/// The downloads of the past: the newest on top, older ones by day, all of them by search. Put
/// together each time it opens.
class HistoryMenu final : public HistoryListMenu {
    Q_OBJECT

public:
    enum class SearchField { Shown, Absent };

    /// All of it outlives the menu. Its title is "History".
    HistoryMenu(app::DQHistorian& historian, app::DQMainController& controller,
                platform::UserDefaults& defaults, SearchField searchField,
                QWidget* parent = nullptr);
    ~HistoryMenu() override;

protected:
    /// What is typed goes to the search field, and Return goes on to what was found.
    void keyPressEvent(QKeyEvent* event) override;

private:
    void rebuild();
    void makeSearch();
    void populate();
    void addDays(const app::HistoryListing& listing);

    app::DQHistorian& historian_;
    app::DQMainController& controller_;
    const engine::Context& context_;
    platform::UserDefaults& defaults_;
    HistoryIcons icons_;
    HistorySearch* search_ = nullptr;
    QList<QAction*> fixedItems_;
};

}  // namespace ui
