#pragma once

#include <QRect>
#include <QString>

class QPainter;

namespace ui {

/// Draws figures in the middle of the frame's height so that those below each other line up.
/// `digitWidth`: of each digit; 0: as the font has them.
void paintFigures(QPainter& painter, const QRect& frame, const QString& text, Qt::Alignment side,
                  double digitWidth);

}  // namespace ui
