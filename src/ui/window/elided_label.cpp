#include "ui/window/elided_label.h"

#include <QPainter>
#include <QStyle>
#include <algorithm>

namespace ui {

QSize ElidedLabel::minimumSizeHint() const {
    return {0, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    const int leading = std::max(indent(), 0);
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    const QRect room =
        contentsRect().adjusted(isMirrored ? 0 : leading, 0, isMirrored ? -leading : 0, 0);
    QPainter painter(this);
    style()->drawItemText(
        &painter, room, static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())),
        palette(), isEnabled(), fontMetrics().elidedText(text(), Qt::ElideRight, room.width()),
        foregroundRole());
}

}  // namespace ui
