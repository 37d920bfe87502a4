#pragma once

#include <QMenu>

namespace app {
class Commands;
}

namespace ui {

/// The menu of the status item and of the drop target.
class StatusItemMenu final : public QMenu {
    Q_OBJECT

public:
    /// Outlives the menu.
    explicit StatusItemMenu(const app::Commands& commands);

private:
    /// Keys that are held while it opens put the log in the place of the settings.
    void chooseAlternate();

    QAction* settings_ = nullptr;
    QAction* log_ = nullptr;
};

}  // namespace ui
