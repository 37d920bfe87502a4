// What mouse and keys do to the list.

#include <QApplication>
#include <QHelpEvent>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>
#include <utility>

#include "app/rows/rows.h"
#include "ui/list/download_list.h"
#include "ui/list/download_list_model.h"
#include "ui/list/row_texts.h"

namespace ui {

unsigned DQDownloadList::actionButtonAt(int row, const QPoint& point) const {
    const engine::DownloadPtr download = rows_->download(row);
    if (!download) {
        return 0;
    }
    const QRect frame = visualRect(rows_->index(row));
    for (const unsigned index : {engine::DQDownloadActionPrimary, engine::DQDownloadActionRemove}) {
        const QRect button = geometry_.areaOfActionButtonWithIndex(index, frame, layoutDirection());
        if (button.contains(point) && state_.canPerformAction(*download, index)) {
            return index;
        }
    }
    return 0;
}

DQDownloadList::PlacedButton DQDownloadList::buttonUnder(const QPoint& point) const {
    const int row = indexAt(point).row();
    const unsigned index = actionButtonAt(row, point);
    return index == 0 ? PlacedButton() : PlacedButton{row, index};
}

void DQDownloadList::setPointer(const std::optional<QPoint>& point) {
    const PlacedButton before = pointer_ ? buttonUnder(*pointer_) : PlacedButton();
    pointer_ = point;
    const PlacedButton after = point ? buttonUnder(*point) : PlacedButton();
    if (before != after) {
        rows_->redrawRow(before.row);
        rows_->redrawRow(after.row);
    }
}

bool DQDownloadList::showButtonToolTip(const QHelpEvent& event) {
    const PlacedButton button = buttonUnder(event.pos());
    const engine::DownloadPtr download = rows_->download(button.row);
    if (!download) {
        return false;
    }
    const QRect frame = visualRect(rows_->index(button.row));
    QToolTip::showText(
        event.globalPos(), actionToolTip(*download, button.index), viewport(),
        geometry_.areaOfActionButtonWithIndex(button.index, frame, layoutDirection()));
    return true;
}

bool DQDownloadList::viewportEvent(QEvent* event) {
    switch (event->type()) {
        case QEvent::HoverEnter:
        case QEvent::HoverMove:
            setPointer(static_cast<QHoverEvent*>(event)->position().toPoint());
            break;
        case QEvent::HoverLeave:
            setPointer({});
            break;
        case QEvent::ToolTip:
            if (showButtonToolTip(*static_cast<QHelpEvent*>(event))) {
                return true;
            }
            break;
        default:
            break;
    }
    return QListView::viewportEvent(event);
}

bool DQDownloadList::trackActionButton(const QPoint& point) {
    const int row = indexAt(point).row();
    const unsigned index = actionButtonAt(row, point);
    if (index == 0) {
        return false;
    }
    pressed_ = {rows_->download(row), index};
    highlightPressedButton(true);
    return true;
}

void DQDownloadList::highlightPressedButton(bool isInside) {
    const unsigned wanted = isInside ? pressed_.index : 0;
    if (state_.highlightedActionButtonIndex(*pressed_.download) != wanted) {
        state_.setHighlightedActionButtonIndex(*pressed_.download, wanted);
        rows_->redrawRow(rows_->row(*pressed_.download));
    }
}

void DQDownloadList::mousePressEvent(QMouseEvent* event) {
    setFocusShown(false);
    if (event->button() == Qt::LeftButton && trackActionButton(event->position().toPoint())) {
        return;
    }
    // A menu about a row leaves the selection as it is.
    if (event->button() == Qt::RightButton) {
        return;
    }
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && index.isValid()) {
        dragOrigin_ = event->position().toPoint();
    }
    QListView::mousePressEvent(event);
}

void DQDownloadList::mouseMoveEvent(QMouseEvent* event) {
    const QPoint point = event->position().toPoint();
    if (!pressed_.download) {
        if (!trackDrag(point)) {
            QListView::mouseMoveEvent(event);
        }
        return;
    }
    const int row = rows_->row(*pressed_.download);
    highlightPressedButton(row >= 0 && actionButtonAt(row, point) == pressed_.index);
}

bool DQDownloadList::trackDrag(const QPoint& point) {
    if (!dragOrigin_) {
        return false;
    }
    const QPoint motion = point - *dragOrigin_;
    if (motion.manhattanLength() < QApplication::startDragDistance()) {
        return true;
    }
    const QRect row = visualRect(indexAt(*dragOrigin_));
    const bool drags = geometry_.dragHandleFrame(row, layoutDirection()).contains(*dragOrigin_) ||
                       std::abs(motion.x()) > std::abs(motion.y());
    dragOrigin_.reset();
    if (drags) {
        setState(NoState);
        Q_EMIT dragWanted(selectedRows());
    }
    return drags;
}

void DQDownloadList::mouseReleaseEvent(QMouseEvent* event) {
    dragOrigin_.reset();
    if (!pressed_.download) {
        QListView::mouseReleaseEvent(event);
        return;
    }
    const PressedButton pressed = std::exchange(pressed_, {});
    const bool isInside = state_.highlightedActionButtonIndex(*pressed.download) == pressed.index;
    state_.setHighlightedActionButtonIndex(*pressed.download, 0);
    if (isInside) {
        state_.actions().perform(*pressed.download, pressed.index);
    }
    viewport()->update();
}

void DQDownloadList::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const QPoint point = event->position().toPoint();
    if (trackActionButton(point)) {
        return;
    }
    const engine::DownloadPtr download = rows_->download(indexAt(point).row());
    if (!download) {
        return;
    }
    if (isAlternateFunctionalityEvent()) {
        state_.actions().reveal(*download);
    } else {
        state_.actions().open(*download);
    }
}

/// Who uses the pointer needs no mark where the keys would go on.
void DQDownloadList::setFocusShown(bool isShown) {
    if (std::exchange(isFocusShown_, isShown) != isShown) {
        viewport()->update();
    }
}

void DQDownloadList::keyPressEvent(QKeyEvent* event) {
    setFocusShown(true);
    switch (event->key()) {
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            Q_EMIT removeWanted();
            return;
        case Qt::Key_Escape:
            clearSelection();
            return;
        case Qt::Key_Space:
            Q_EMIT pauseToggleWanted();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (const auto download = rows_->download(currentIndex().row())) {
                state_.actions().open(*download);
            }
            return;
        default:
            QListView::keyPressEvent(event);
    }
}

void DQDownloadList::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const QModelIndex index = currentIndex();
        const QRect frame = index.isValid() ? visualRect(index) : viewport()->rect();
        Q_EMIT contextMenuWanted(index.row(), viewport()->mapToGlobal(frame.center()));
        return;
    }
    Q_EMIT contextMenuWanted(indexAt(event->pos()).row(), event->globalPos());
}

}  // namespace ui
