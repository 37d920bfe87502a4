#include "ui/list/row_geometry.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QStyle>
#include <algorithm>

namespace ui {
namespace {

constexpr int iconSize = 32;
constexpr int iconMargin = 3;
constexpr int textLeft = 40;
constexpr int textTop = 5;
/// Above and below the texts.
constexpr int textMargins = 9;
constexpr int buttonSize = 15;
constexpr int buttonMargin = 12;
constexpr int buttonsMargin = 24;

QFont scaledFont(const QFont& font, double factor) {
    QFont scaled = font;
    scaled.setPixelSize(std::max(8, static_cast<int>(QFontInfo(font).pixelSize() * factor + 0.5)));
    return scaled;
}

QRect mirrored(const QRect& frame, const QRect& row, Qt::LayoutDirection direction) {
    return QStyle::visualRect(direction, row, frame);
}

}  // namespace

RowGeometry::RowGeometry(const QFont& font)
    : nameFont_(font),
      statusFont_(scaledFont(font, 0.82)),
      nameHeight_(QFontMetrics(nameFont_).height()),
      statusHeight_(QFontMetrics(statusFont_).height()),
      rowHeight_(std::max(iconSize + 2 * iconMargin, nameHeight_ + statusHeight_ + textMargins)) {}

QRect RowGeometry::imageFrameForCellFrame(const QRect& row, Qt::LayoutDirection direction) const {
    const QRect frame(row.left() + iconMargin, row.top() + (rowHeight_ - iconSize) / 2, iconSize,
                      iconSize);
    return mirrored(frame, row, direction);
}

QRect RowGeometry::textFrameForCellFrame(const QRect& row, int buttons,
                                         Qt::LayoutDirection direction) const {
    int width = row.width() - textLeft;
    if (buttons == 1) {
        width -= buttonSize + buttonsMargin;
    } else if (buttons > 1) {
        width -= buttonSize * 9 / 4 + buttonsMargin;
    }
    const QRect frame(row.left() + textLeft, row.top() + textTop, std::max(0, width), nameHeight_);
    return mirrored(frame, row, direction);
}

QRect RowGeometry::statusFrameForCellFrame(const QRect& row, int buttons,
                                           Qt::LayoutDirection direction) const {
    QRect frame = textFrameForCellFrame(row, buttons, direction);
    frame.moveTop(frame.bottom() + 1);
    frame.setHeight(statusHeight_);
    return frame;
}

QRect RowGeometry::frameForActionButtonWithIndex(unsigned index, const QRect& row,
                                                 Qt::LayoutDirection direction) const {
    const int step = index == 2 ? 0 : (index == 1 ? buttonSize * 5 / 4 : buttonSize * 5 / 2);
    const int left = row.left() + row.width() - buttonSize - buttonMargin - step;
    const QRect frame(left, row.top() + (row.height() - buttonSize) / 2, buttonSize, buttonSize);
    return mirrored(frame, row, direction);
}

QRect RowGeometry::blobFrameForCellFrame(const QRect& row, Qt::LayoutDirection direction) const {
    constexpr int width = 64;
    QRect frame = frameForActionButtonWithIndex(0, row, Qt::LeftToRight);
    frame.setLeft(frame.right() - width);
    return mirrored(frame, row, direction);
}

QRect RowGeometry::dragHandleFrame(const QRect& row, Qt::LayoutDirection direction) const {
    return mirrored(QRect(row.left(), row.top(), iconSize + 2 * iconMargin, row.height()), row,
                    direction);
}

}  // namespace ui
