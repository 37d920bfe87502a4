#pragma once

#include <QElapsedTimer>
#include <QPoint>
#include <QWidget>

#include "platform/base/observation.h"
#include "ui/status/stacked_windows.h"
#include "ui/window/task_bar_entry.h"

namespace desktop {
class DQStatusItemController;
}

namespace platform {
class UserDefaults;
}

namespace ui {

/// A small window that floats above the others, shows how far all is and takes addresses: what
/// the status item itself, living in the desktop's panel, cannot. It can be dragged anywhere and
/// sticks to the edges of its screen.
class DropTarget final : public QWidget {
    Q_OBJECT

public:
    /// Both outlive the window.
    DropTarget(desktop::DQStatusItemController& controller, platform::UserDefaults& defaults);

    /// Whether it is wanted; it may be out of the way of a window that fills the screen.
    void setWanted(bool isWanted);

Q_SIGNALS:
    void clicked();
    void menuWanted(const QPoint& position);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void followScreens();
    void place();
    void keepOutOfTheWay();
    [[nodiscard]] bool isCovered() const;

    desktop::DQStatusItemController& controller_;
    platform::UserDefaults& defaults_;
    StackedWindows others_;
    TaskBarEntry taskBarEntry_{*this};
    bool isWanted_ = false;
    bool canDrop_ = false;
    bool isMoving_ = false;
    QElapsedTimer sinceShown_;
    QPoint grip_;  ///< Where the pointer holds the window.
    platform::Observation observation_;
};

}  // namespace ui
