#include "ui/art/hairline.h"

#include <QPainter>
#include <cmath>

namespace ui {

void paintHairlineBelow(QPainter& painter, const QRect& frame, const QColor& color) {
    // At broken scales a pixel of the layout covers parts of two of the screen.
    const QTransform toDevice = painter.deviceTransform();
    const double scale = toDevice.m22();
    const double bottom = toDevice.map(QPointF(0, frame.y() + frame.height())).y();
    const double top = toDevice.inverted().map(QPointF(0, std::floor(bottom + 0.01) - 1)).y();
    painter.fillRect(QRectF(frame.left(), top, frame.width(), 1 / scale), color);
}

}  // namespace ui
