#include "ui/details/wrapping_row.h"

#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace ui {

WrappingRow::~WrappingRow() {
    for (QLayoutItem* item : items_)
        delete item;
}

QLayoutItem* WrappingRow::itemAt(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)] : nullptr;
}

QLayoutItem* WrappingRow::takeAt(int index) {
    QLayoutItem* item = itemAt(index);
    if (item)
        items_.erase(items_.begin() + index);
    return item;
}

WrappingRow::Arrangement WrappingRow::arrange(int width) const {
    Arrangement arrangement;
    QPoint next(0, 0);
    for (const QLayoutItem* item : items_) {
        const QSize size = item->sizeHint();
        if (next.x() > 0 && next.x() + size.width() > width)
            next = {0, arrangement.height + spacing()};
        arrangement.frames.emplace_back(next, size);
        arrangement.height = std::max(arrangement.height, next.y() + size.height());
        next.rx() += size.width() + spacing();
    }
    return arrangement;
}

QSize WrappingRow::withMargins(QSize size) const {
    return size.grownBy(contentsMargins());
}

int WrappingRow::heightForWidth(int width) const {
    const QMargins margins = contentsMargins();
    return withMargins({0, arrange(width - margins.left() - margins.right()).height}).height();
}

QSize WrappingRow::minimumSize() const {
    QSize size;
    for (const QLayoutItem* item : items_)
        size = size.expandedTo(item->minimumSize());
    return withMargins(size);
}

QSize WrappingRow::sizeHint() const {
    const Arrangement oneRow = arrange(QWIDGETSIZE_MAX);
    const int width = oneRow.frames.empty() ? 0 : oneRow.frames.back().right() + 1;
    return withMargins({width, oneRow.height});
}

void WrappingRow::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    const QRect inner = contentsRect();
    const Qt::LayoutDirection direction =
        parentWidget() ? parentWidget()->layoutDirection() : Qt::LeftToRight;
    auto item = items_.begin();
    for (const QRect& frame : arrange(inner.width()).frames)
        (*item++)->setGeometry(
            QStyle::visualRect(direction, inner, frame.translated(inner.topLeft())));
}

}  // namespace ui
