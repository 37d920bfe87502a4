#include "ui/list/row_geometry.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QStyle>
#include <algorithm>

using namespace Qt::Literals::StringLiterals;

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
    scaled.setPixelSize(std::max(8, qRound(QFontInfo(font).pixelSize() * factor)));
    return scaled;
}

/// Digits of one width at most; see `RowGeometry::digitWidth`.
double unequalDigitWidth(const QFont& font) {
    const QFontMetricsF metrics(font);
    double least = metrics.horizontalAdvance(u'0');
    double most = least;
    for (char16_t digit = u'1'; digit <= u'9'; ++digit) {
        const double width = metrics.horizontalAdvance(QChar(digit));
        least = std::min(least, width);
        most = std::max(most, width);
    }
    constexpr double negligible = 0.01;
    return most - least < negligible ? 0 : most;
}

int widthOfColumn(const QFont& font, double digitWidth, const QString& widest) {
    constexpr int space = 16;
    const auto digits = std::count_if(widest.begin(), widest.end(),
                                      [](QChar character) { return character.isDigit(); });
    return QFontMetrics(font).horizontalAdvance(widest) + space +
           (digitWidth > 0 ? static_cast<int>(digits) : 0);
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
      rowHeight_(std::max(iconSize + 2 * iconMargin, nameHeight_ + statusHeight_ + textMargins)),
      digitWidth_(unequalDigitWidth(nameFont_)),
      columnWidths_{widthOfColumn(nameFont_, digitWidth_, u"100 %"_s),
                    widthOfColumn(nameFont_, digitWidth_, u"888.8 MB/s"_s),
                    widthOfColumn(nameFont_, digitWidth_, u"88:88:88"_s)} {}

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

QRect RowGeometry::areaOfActionButtonWithIndex(unsigned index, const QRect& row,
                                               Qt::LayoutDirection direction) const {
    constexpr int width = 22, height = 30;
    // The buttons stand closer together than that, so each reaches away from the other.
    const QRect button = frameForActionButtonWithIndex(index, row, Qt::LeftToRight);
    const int left = index == 2 ? button.left() - 1 : button.right() + 2 - width;
    const QRect area(left, row.top() + (row.height() - height) / 2, width, height);
    return mirrored(area.intersected(row), row, direction);
}

bool RowGeometry::hasColumns(const QRect& row) const {
    constexpr int leastWidth = 600, leastForTexts = 200;
    return row.width() >= std::max(leastWidth, textLeft + leastForTexts + columnsWidth() +
                                                   buttonSize * 9 / 4 + buttonsMargin);
}

int RowGeometry::columnsWidth() const {
    return columnWidths_[0] + columnWidths_[1] + columnWidths_[2];
}

QRect RowGeometry::columnFrame(Column column, const QRect& row, const QRect& texts,
                               Qt::LayoutDirection direction) const {
    int after = 0;
    for (auto index = static_cast<std::size_t>(column) + 1; index < columnWidths_.size(); ++index)
        after += columnWidths_[index];
    const int width = columnWidths_[static_cast<std::size_t>(column)];
    const QRect frame(texts.right() + 1 - after - width, row.top(), width, rowHeight_);
    return mirrored(frame, texts, direction);
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
