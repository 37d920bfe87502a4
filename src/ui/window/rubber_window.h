#pragma once

#include <QObject>
#include <QTimer>
#include <QVariantAnimation>

#include "platform/base/observation.h"

class QMainWindow;

namespace platform {
class UserDefaults;
}

namespace ui {

class DQDownloadList;

/// What decides the height of a window that follows its list, in device-independent pixels.
struct RubberMeasures {
    int rowHeight = 0;
    int contentHeight = 0;  ///< Of all rows, as far as they have not collapsed.
    int numberOfRows = 0;
    bool isCollapsing = false;  ///< A row is.
    int otherHeight = 0;        ///< Of the window without its list.
    int minimumHeight = 0;
    int roomHeight = 0;  ///< From the window's top to the bottom of the screen.
};
[[nodiscard]] int rubberHeight(const RubberMeasures& measures);

/// `height` cut down to whole rows above the minimum.
[[nodiscard]] int correctedWindowHeight(int height, int minimumHeight, int rowHeight);

/// While "Rubber Window" is on, fits the window's height to its list, its top staying where it is.
class RubberWindow final : public QObject {
    Q_OBJECT

public:
    /// All of it outlives it.
    RubberWindow(QMainWindow& window, DQDownloadList& list, platform::UserDefaults& defaults);

    void updateRubberWindow(bool animated);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool isOn() const;
    [[nodiscard]] RubberMeasures measures() const;
    void setHeight(int height);
    /// The user may not change the height while it follows the list.
    void fixHeight(bool isFixed);
    void snapHeight();

    QMainWindow& window_;
    DQDownloadList& list_;
    platform::UserDefaults& defaults_;
    bool wasOn_ = false;
    /// The screen has room for all rows, so that no scroll bar is needed on the way.
    bool mayShowAll_ = false;
    QVariantAnimation animation_;
    QTimer snap_;
    platform::Observation observation_;
};

}  // namespace ui
