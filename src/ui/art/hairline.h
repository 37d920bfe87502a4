#pragma once

class QColor;
class QPainter;
class QRect;

namespace ui {

/// Fills the lowest pixels of `frame` with a line one device pixel high, whatever the scale.
void paintHairlineBelow(QPainter& painter, const QRect& frame, const QColor& color);

}  // namespace ui
