#include "ui/list/figures.h"

#include <QFontMetricsF>
#include <QPainter>

namespace ui {

void paintFigures(QPainter& painter, const QRect& frame, const QString& text, Qt::Alignment side,
                  double digitWidth) {
    // In windows that run from right to left as well.
    painter.setLayoutDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    if (digitWidth <= 0 || text.isRightToLeft()) {
        painter.drawText(frame, static_cast<int>(side | Qt::AlignAbsolute | Qt::AlignVCenter),
                         text);
        return;
    }
    const QFontMetricsF metrics(painter.font());
    const auto widthOf = [&](QChar character) {
        return character.isDigit() ? digitWidth : metrics.horizontalAdvance(character);
    };
    double width = 0;
    for (const QChar character : text)
        width += widthOf(character);
    double x = side == Qt::AlignRight ? frame.right() + 1 - width : frame.left();
    const double y = frame.top() + (frame.height() - metrics.height()) / 2 + metrics.ascent();
    for (const QChar character : text) {
        const double room = widthOf(character);
        painter.drawText(QPointF(x + (room - metrics.horizontalAdvance(character)) / 2, y),
                         character);
        x += room;
    }
}

}  // namespace ui
