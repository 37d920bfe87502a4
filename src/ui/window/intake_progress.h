#pragma once

#include <QWidget>

class QLabel;

namespace app {
class DQMainController;
}

namespace ui {

/// How far a long intake is, with a button that ends it. Visible only while one goes on.
class IntakeProgress final : public QWidget {
    Q_OBJECT

public:
    IntakeProgress(app::DQMainController& controller, QWidget* parent);

private:
    void showCount(qsizetype count);

    QLabel* label_;
};

}  // namespace ui
