#pragma once

#include <QPalette>
#include <QRect>

class QFont;
class QPainter;

namespace ui {

/// What the list shows while it has no rows, and while something is dragged over it then.
struct EmptyListText {
    bool isDraggingTarget = false;
    /// The drop will ask for a folder.
    bool choosesFolder = false;
    /// There are downloads, and the filter shows none of them.
    bool isFilteredOut = false;
    /// How much of the text the background still covers, 1 to 0.
    double maskAlpha = 0;

    /// `below`: how much space to leave under the text, in the middle with it.
    void paint(QPainter& painter, const QRect& bounds, int below, const QPalette& palette) const;

    /// How high the text is with nothing in its way.
    [[nodiscard]] static int height(const QFont& font);

private:
    [[nodiscard]] QString text() const;
};

}  // namespace ui
