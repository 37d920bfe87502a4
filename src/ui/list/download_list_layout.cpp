// Where the rows of the list lie. All have one height but a few that are collapsing, so every
// question is answered by arithmetic and none by a walk over the rows.

#include <QScrollBar>
#include <algorithm>

#include "ui/list/download_list.h"
#include "ui/list/download_list_model.h"
#include "ui/list/vanishing_rows.h"

namespace ui {

int DQDownloadList::topOfRow(int row) const {
    int top = row * rowHeight();
    for (const auto& collapsing : vanishing_->collapsingRows()) {
        if (collapsing.row >= row) {
            break;
        }
        top -= rowHeight() - collapsing.height;
    }
    return top;
}

int DQDownloadList::heightOfRow(int row) const {
    for (const auto& collapsing : vanishing_->collapsingRows()) {
        if (collapsing.row == row) {
            return collapsing.height;
        }
    }
    return rowHeight();
}

int DQDownloadList::rowAtContentY(int y) const {
    int row = std::max(0, y) / rowHeight();
    while (topOfRow(row) + heightOfRow(row) <= y) {
        ++row;
    }
    return row;
}

int DQDownloadList::contentHeight() const {
    return topOfRow(rows_->rowCount());
}

QRect DQDownloadList::visualRect(const QModelIndex& index) const {
    if (!index.isValid()) {
        return {};
    }
    return {0, topOfRow(index.row()) - verticalOffset(), viewport()->width(),
            heightOfRow(index.row())};
}

QModelIndex DQDownloadList::indexAt(const QPoint& point) const {
    const int y = point.y() + verticalOffset();
    const int row = rowAtContentY(y);
    return y >= 0 && row < rows_->rowCount() ? rows_->index(row) : QModelIndex();
}

void DQDownloadList::scrollTo(const QModelIndex& index, ScrollHint hint) {
    if (!index.isValid()) {
        return;
    }
    const int top = topOfRow(index.row());
    const int room = viewport()->height() - heightOfRow(index.row());
    int offset = verticalOffset();
    if (hint == PositionAtCenter) {
        offset = top - room / 2;
    } else if (top < offset || hint == PositionAtTop) {
        offset = top;
    } else if (top - room > offset || hint == PositionAtBottom) {
        offset = top - room;
    }
    verticalScrollBar()->setValue(offset);
}

void DQDownloadList::doItemsLayout() {
    // Not QListView's, which computes a place for each of the rows.
    QAbstractItemView::doItemsLayout();  // NOLINT(bugprone-parent-virtual-call)
}

void DQDownloadList::updateGeometries() {
    QAbstractItemView::updateGeometries();  // NOLINT(bugprone-parent-virtual-call)
    QScrollBar* bar = verticalScrollBar();
    bar->setSingleStep(rowHeight());
    bar->setPageStep(viewport()->height());
    bar->setRange(0, std::max(0, contentHeight() - viewport()->height()));
}

int DQDownloadList::verticalOffset() const {
    return verticalScrollBar()->value();
}

void DQDownloadList::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags flags) {
    const QRect area = rect.normalized();
    const int offset = verticalOffset();
    const int first = rowAtContentY(area.top() + offset);
    const int last = std::min(rowAtContentY(area.bottom() + offset), rows_->rowCount() - 1);
    QItemSelection selection;
    if (first <= last) {
        selection.select(rows_->index(first), rows_->index(last));
    }
    selectionModel()->select(selection, flags);
}

QRegion DQDownloadList::visualRegionForSelection(const QItemSelection& selection) const {
    QRegion region;
    for (const QItemSelectionRange& range : selection) {
        const int offset = verticalOffset();
        const int top = topOfRow(range.top()) - offset;
        const int bottom = topOfRow(range.bottom() + 1) - offset;
        region += QRect(0, top, viewport()->width(), bottom - top).intersected(viewport()->rect());
    }
    return region;
}

QModelIndex DQDownloadList::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
    const int count = rows_->rowCount();
    if (count == 0) {
        return {};
    }
    const int current = currentIndex().isValid() ? currentIndex().row() : -1;
    const int page = std::max(1, viewport()->height() / rowHeight() - 1);
    int row = 0;
    switch (action) {
        case MoveUp:
        case MovePrevious:
            row = current < 0 ? count - 1 : current - 1;
            break;
        case MoveDown:
        case MoveNext:
            row = current + 1;
            break;
        case MovePageUp:
            row = current - page;
            break;
        case MovePageDown:
            row = current + page;
            break;
        case MoveHome:
            row = 0;
            break;
        case MoveEnd:
            row = count - 1;
            break;
        case MoveLeft:
        case MoveRight:
            return currentIndex();
    }
    return rows_->index(std::clamp(row, 0, count - 1));
}

}  // namespace ui
