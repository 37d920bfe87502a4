#include "ui/list/download_list.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <chrono>

#include "app/settings.h"
#include "engine/environment.h"
#include "platform/base/user_defaults.h"
#include "ui/list/download_list_model.h"
#include "ui/list/vanishing_rows.h"
#include "ui/text.h"

namespace ui {

using namespace std::chrono_literals;

DQDownloadList::DQDownloadList(QWidget* parent)
    : QListView(parent),
      geometry_(font()),
      cell_(geometry_),
      rows_(new DownloadListModel(this)),
      vanishing_(std::make_shared<VanishingRows>(*this)) {
    setObjectName(QStringLiteral("downloadList"));
    setAccessibleName(translated("Downloads"));
    setModel(rows_);
    setSelectionMode(ExtendedSelection);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    setEditTriggers(NoEditTriggers);
    setMouseTracking(false);

    delayedDisplay_.setSingleShot(true);
    connect(&delayedDisplay_, &QTimer::timeout, viewport(), qOverload<>(&QWidget::update));
    // Relative dates of finished downloads grow old.
    minute_.setInterval(60s);
    connect(&minute_, &QTimer::timeout, viewport(), qOverload<>(&QWidget::update));
    minute_.start();
    fade_.setInterval(50ms);
    connect(&fade_, &QTimer::timeout, this, &DQDownloadList::fadeInStep);
    connect(vanishing_.get(), &VanishingRows::heightsChanged, this, [this] {
        updateGeometries();
        viewport()->update();
        Q_EMIT contentHeightChanged();
    });
}

DQDownloadList::~DQDownloadList() = default;

bool DQDownloadList::hasItems() const {
    return rows_->rowCount() > 0;
}

void DQDownloadList::reloadRows(std::shared_ptr<const std::vector<engine::DownloadPtr>> rows,
                                const QList<qsizetype>& selectedRows) {
    const bool reports = reportsSelection_;
    reportsSelection_ = false;
    const int offset = verticalOffset();
    rows_->reload(std::move(rows));
    vanishing_->updateRows();
    updateGeometries();
    verticalScrollBar()->setValue(offset);
    selectRows(selectedRows);
    reportsSelection_ = reports;
    noteEmptiness();
    viewport()->update();
    Q_EMIT contentHeightChanged();
}

void DQDownloadList::selectRows(const QList<qsizetype>& rows) {
    const bool reports = reportsSelection_;
    reportsSelection_ = false;
    QItemSelection selection;
    for (const qsizetype row : rows) {
        const QModelIndex index = rows_->index(static_cast<int>(row));
        selection.select(index, index);
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    reportsSelection_ = reports;
}

void DQDownloadList::setNeedsDisplayAfterDelay(double seconds) {
    if (!delayedDisplay_.isActive()) {
        delayedDisplay_.start(static_cast<int>(seconds * 1000));
    }
}

void DQDownloadList::noteEmptiness() {
    if (hasItems()) {
        _didHaveItems = true;
        fade_.stop();
    } else if (_didHaveItems) {
        _didHaveItems = false;
        emptyText_.maskAlpha = 1.0;
        fade_.start();
    }
}

void DQDownloadList::fadeInStep() {
    emptyText_.maskAlpha -= 0.15;
    if (emptyText_.maskAlpha <= 0) {
        emptyText_.maskAlpha = 0;
        fade_.stop();
    }
    viewport()->update();
}

void DQDownloadList::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    if (!hasItems()) {
        painter.setFont(font());
        emptyText_.paint(painter, viewport()->rect(), palette());
        return;
    }
    paintRows(painter, event->rect());
}

void DQDownloadList::paintRows(QPainter& painter, const QRect& area) {
    DQDownloadCell::Surroundings surroundings;
    surroundings.palette = palette();
    surroundings.direction = layoutDirection();
    surroundings.devicePixelRatio = devicePixelRatioF();
    surroundings.isActiveWindow = isActiveWindow();
    surroundings.style = static_cast<ProgressBarStyle>(std::clamp<qint64>(
        platform::standardDefaults().get(app::settings::progressBarStyle), 0, 3));

    const int offset = verticalOffset();
    const int count = rows_->rowCount();
    int row = rowAtContentY(area.top() + offset);
    int top = topOfRow(row) - offset;
    const QItemSelectionModel* selection = selectionModel();
    for (; row < count && top <= area.bottom(); ++row) {
        const int height = heightOfRow(row);
        const engine::DownloadPtr download = rows_->download(row);
        cell_.reflectDownload(*download, true);
        surroundings.row = QRect(0, top, viewport()->width(), height);
        surroundings.isSelected = selection->isSelected(rows_->index(row));
        surroundings.drawsBottomSeparator =
            row + 1 == count || !selection->isSelected(rows_->index(row + 1));
        cell_.paint(painter, surroundings);
        top += height;
    }
    if (top <= area.bottom()) {
        painter.fillRect(QRect(area.left(), top, area.width(), area.bottom() - top + 1),
                         palette().color(QPalette::Base));
    }
    if (hasFocus() && currentIndex().isValid() && !selection->isSelected(currentIndex())) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = visualRect(currentIndex()).adjusted(1, 1, -1, -2);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
}

unsigned DQDownloadList::actionButtonAt(int row, const QPoint& point) const {
    const engine::DownloadPtr download = rows_->download(row);
    if (!download) {
        return 0;
    }
    const QRect frame = visualRect(rows_->index(row));
    for (const unsigned index : {engine::DQDownloadActionPrimary, engine::DQDownloadActionRemove}) {
        // A little more than the drawing, so that it can be hit.
        const QRect button =
            geometry_.actionButtonFrame(index, frame, layoutDirection()).adjusted(-1, -4, 1, 4);
        if (button.contains(point) && download->canPerformActionWithIndex(index)) {
            return index;
        }
    }
    return 0;
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
    if (pressed_.download->highlightedActionButtonIndex() != wanted) {
        pressed_.download->setHighlightedActionButtonIndex(wanted);
        rows_->redrawRow(rows_->row(*pressed_.download));
    }
}

void DQDownloadList::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && trackActionButton(event->position().toPoint())) {
        return;
    }
    QListView::mousePressEvent(event);
}

void DQDownloadList::mouseMoveEvent(QMouseEvent* event) {
    if (!pressed_.download) {
        QListView::mouseMoveEvent(event);
        return;
    }
    const QPoint point = event->position().toPoint();
    const int row = rows_->row(*pressed_.download);
    highlightPressedButton(row >= 0 && actionButtonAt(row, point) == pressed_.index);
}

void DQDownloadList::mouseReleaseEvent(QMouseEvent* event) {
    if (!pressed_.download) {
        QListView::mouseReleaseEvent(event);
        return;
    }
    const PressedButton pressed = std::exchange(pressed_, {});
    const bool isInside = pressed.download->highlightedActionButtonIndex() == pressed.index;
    pressed.download->setHighlightedActionButtonIndex(0);
    if (isInside) {
        pressed.download->performActionWithIndex(pressed.index);
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
    if (engine::environment().isAlternateFunctionalityEvent()) {
        download->reveal();
    } else {
        download->open();
    }
}

void DQDownloadList::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            Q_EMIT removeWanted();
            return;
        case Qt::Key_Escape:
            clearSelection();
            return;
        case Qt::Key_Space:
            if (const auto download = rows_->download(currentIndex().row());
                download && download->canPerformActionWithIndex(engine::DQDownloadActionPrimary)) {
                download->performActionWithIndex(engine::DQDownloadActionPrimary);
            }
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (const auto download = rows_->download(currentIndex().row())) {
                download->open();
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

void DQDownloadList::changeEvent(QEvent* event) {
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        geometry_ = RowGeometry(font());
        updateGeometries();
    }
    if (event->type() == QEvent::ActivationChange || event->type() == QEvent::PaletteChange) {
        viewport()->update();
    }
}

void DQDownloadList::selectionChanged(const QItemSelection& selected,
                                      const QItemSelection& deselected) {
    QListView::selectionChanged(selected, deselected);
    if (!reportsSelection_) {
        return;
    }
    QList<qsizetype> rows;
    for (const QModelIndex& index : selectionModel()->selectedIndexes()) {
        rows.push_back(index.row());
    }
    std::sort(rows.begin(), rows.end());
    viewport()->update();
    Q_EMIT selectionMade(rows);
}

}  // namespace ui
