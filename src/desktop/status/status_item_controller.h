#pragma once

#include <QImage>
#include <QObject>

#include "platform/base/timer.h"

namespace app {
struct Pasteboard;
}

namespace platform {
class UserDefaults;
}

namespace desktop {

class DQStatusItemDragAndDropDestination;

/// What happens to drags over the status item's drop target, whatever window that is: which are
/// taken, how the picture answers, and that a drag which rests there brings up the main window.
/// Main thread.
class DQStatusItemController final : public QObject {
    Q_OBJECT

public:
    /// Both outlive the controller.
    DQStatusItemController(const platform::UserDefaults& defaults, platform::RunLoop& loop);

    /// Null: no drag is taken. Outlives the controller or is taken away.
    void setDragAndDropDestination(DQStatusItemDragAndDropDestination* destination);
    void setStatusItemImage(const QImage& image);

    /// A drag with these types has come in; `pasteboard` is what it holds. Whether it may be
    /// dropped.
    bool draggingEntered(const QStringList& types, const app::Pasteboard& pasteboard);
    /// It has left, or was given up.
    void draggingExited();
    /// It was dropped. Whether that was taken.
    bool performDragOperation(const app::Pasteboard& pasteboard);

    /// As it is to be shown now: plain, highlighted or flashing.
    [[nodiscard]] const QImage& image() const { return shownImage_; }
    /// Whether the target itself is to look as one that takes what is held over it.
    [[nodiscard]] bool isVisible() const { return _isVisible; }

Q_SIGNALS:
    void imageChanged();

private:
    enum class Highlight { None, Selected, Pale };

    void highlightForSpringLoading();
    void triggerSpringLoad();
    void animate();
    void performAnimationStep();
    void show(Highlight highlight);

    const platform::UserDefaults& defaults_;
    DQStatusItemDragAndDropDestination* _dragAndDropDestination = nullptr;
    QImage _statusItemImage, shownImage_;
    Highlight highlight_ = Highlight::None;
    bool _isDraggingMouseInside = false;
    bool _isVisible = false;
    int _animationStepCounter = 0;  ///< 0: idle, or at the first step.
    platform::Timer springLoad_, animation_;
};

/// The picture tinted, as where something is held over it.
[[nodiscard]] QImage imageHighlightedWithColor(const QImage& image, const QColor& color);

}  // namespace desktop
