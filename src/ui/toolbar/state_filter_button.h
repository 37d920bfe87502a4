#pragma once

#include <QToolButton>

#include "app/queue/state_filter.h"

class QMenu;

namespace app {
class DQMainController;
}

namespace ui {

/// Chooses by how rows stand, or by their folders, which of them the list shows; its menu counts
/// them. It says what is shown.
class StateFilterButton final : public QToolButton {
    Q_OBJECT

public:
    /// The controller outlives it.
    StateFilterButton(app::DQMainController& controller, QWidget* parent);

private:
    void buildMenu();
    void addChoice(const QString& title, qsizetype count, const app::StateFilter& filter);
    void followFilter();

    app::DQMainController& controller_;
    QMenu* menu_;
};

}  // namespace ui
