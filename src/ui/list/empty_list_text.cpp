#include "ui/list/empty_list_text.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

#include "ui/art/contrast.h"
#include "ui/text.h"

namespace ui {
namespace {

constexpr int largest = 32;
constexpr int smallest = 9;

QFont largeFont(QFont font) {
    font.setWeight(QFont::DemiBold);
    font.setPixelSize(largest);
    return font;
}

QFont fittingFont(const QFont& base, const QString& text, const QSize& room) {
    QFont font = largeFont(base);
    const QSize needed = QFontMetrics(font).boundingRect(text).size();
    const double fit = std::min({1.0, double(room.width()) / std::max(1, needed.width()),
                                 double(room.height()) / std::max(1, needed.height())});
    font.setPixelSize(std::max(smallest, static_cast<int>(largest * fit)));
    return font;
}

}  // namespace

int EmptyListText::height(const QFont& font) {
    return QFontMetrics(largeFont(font)).height();
}

QString EmptyListText::text() const {
    if (isDraggingTarget && choosesFolder)
        return translated("Drag URLs Here & Choose Download Folder");
    return isFilteredOut && !isDraggingTarget ? translated("No Matches")
                                              : translated("Drag URLs Here");
}

void EmptyListText::paint(QPainter& painter, const QRect& bounds, int below,
                          const QPalette& palette) const {
    painter.fillRect(bounds, palette.color(QPalette::Base));
    QColor ink = blended(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.45);
    if (isDraggingTarget) {
        const QRect frame = bounds.adjusted(10, 11, -10, -11);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette.color(QPalette::Highlight));
        painter.drawRoundedRect(frame, 8, 8);
        ink = palette.color(QPalette::HighlightedText);
    }
    const QRect room = bounds.adjusted(20, 20, -20, -20 - below);
    painter.setFont(fittingFont(painter.font(), text(), room.size()));
    painter.setPen(ink);
    painter.drawText(room, Qt::AlignCenter, text());
    if (maskAlpha > 0) {
        QColor mask = palette.color(QPalette::Base);
        mask.setAlphaF(static_cast<float>(std::min(1.0, maskAlpha)));
        painter.fillRect(bounds, mask);
    }
}

}  // namespace ui
