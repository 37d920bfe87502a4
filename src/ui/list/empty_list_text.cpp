#include "ui/list/empty_list_text.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

#include "ui/art/theme.h"
#include "ui/text.h"

namespace ui {
namespace {

constexpr int largest = 32;
constexpr int smallest = 9;

QFont fittingFont(const QFont& base, const QString& text, const QSize& room) {
    QFont font = base;
    font.setWeight(QFont::DemiBold);
    font.setPixelSize(largest);
    const QSize needed = QFontMetrics(font).boundingRect(text).size();
    const double fit = std::min({1.0, double(room.width()) / std::max(1, needed.width()),
                                 double(room.height()) / std::max(1, needed.height())});
    font.setPixelSize(std::max(smallest, static_cast<int>(largest * fit)));
    return font;
}

}  // namespace

void EmptyListText::paint(QPainter& painter, const QRect& bounds, const QPalette& palette) const {
    painter.fillRect(bounds, palette.color(QPalette::Base));
    const QString text =
        translated(isDraggingTarget && choosesFolder ? "Drag URLs Here & Choose Download Folder"
                                                     : "Drag URLs Here");
    QColor ink = palette.color(QPalette::Text);
    ink.setAlphaF(0.34F);
    if (isDraggingTarget) {
        const QRect frame = bounds.adjusted(10, 11, -10, -11);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette.color(QPalette::Highlight));
        painter.drawRoundedRect(frame, 8, 8);
        ink = palette.color(QPalette::HighlightedText);
    }
    const QRect room = bounds.adjusted(20, 20, -20, -20);
    painter.setFont(fittingFont(painter.font(), text, room.size()));
    painter.setPen(ink);
    painter.drawText(room, Qt::AlignCenter, text);
    if (maskAlpha > 0) {
        QColor mask = palette.color(QPalette::Base);
        mask.setAlphaF(static_cast<float>(std::min(1.0, maskAlpha)));
        painter.fillRect(bounds, mask);
    }
}

}  // namespace ui
