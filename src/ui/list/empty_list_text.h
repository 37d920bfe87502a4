#pragma once

#include <QPalette>
#include <QRect>

class QPainter;

namespace ui {

/// What the list shows while it has no rows, and while something is dragged over it then.
struct EmptyListText {
    bool isDraggingTarget = false;
    /// The drop will ask for a folder.
    bool choosesFolder = false;
    /// How much of the text the background still covers, 1 to 0.
    double maskAlpha = 0;

    void paint(QPainter& painter, const QRect& bounds, const QPalette& palette) const;
};

}  // namespace ui
