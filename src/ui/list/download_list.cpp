#include "ui/list/download_list.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <chrono>
#include <utility>

#include "app/rows/rows.h"
#include "app/settings.h"
#include "platform/base/user_defaults.h"
#include "ui/art/theme.h"
#include "ui/list/download_list_model.h"
#include "ui/list/empty_list_offers.h"
#include "ui/list/stripe_motion.h"
#include "ui/list/vanishing_rows.h"
#include "ui/text.h"

namespace ui {

using namespace std::chrono_literals;

DQDownloadList::DQDownloadList(app::Rows& state, QWidget* parent)
    : QListView(parent),
      geometry_(font()),
      cell_(geometry_),
      rows_(new DownloadListModel(state.texts(), this)),
      state_(state),
      vanishing_(std::make_shared<VanishingRows>(*this, state.vanishing())),
      offers_(new EmptyListOffers(viewport())),
      stripes_(std::make_unique<StripeMotion>(*viewport())) {
    setObjectName(QStringLiteral("downloadList"));
    setAccessibleName(translated("Downloads"));
    setModel(rows_);
    setSelectionMode(ExtendedSelection);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    setEditTriggers(NoEditTriggers);
    setDragEnabled(false);  // Whether a motion drags is decided here.
    setMouseTracking(false);
    viewport()->setAttribute(Qt::WA_Hover);
    connect(offers_, &EmptyListOffers::pasteWanted, this, &DQDownloadList::pasteWanted);
    connect(offers_, &EmptyListOffers::addWanted, this, &DQDownloadList::addWanted);

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
    const engine::DownloadPtr current = rows_->download(currentIndex().row());
    rows_->reload(std::move(rows));
    vanishing_->updateRows();
    updateGeometries();
    verticalScrollBar()->setValue(offset);
    markSelected(selectedRows);
    restoreCurrentRow(current.get());
    reportsSelection_ = reports;
    noteEmptiness();
    viewport()->update();
    Q_EMIT contentHeightChanged();
}

/// The keys go on from there.
void DQDownloadList::selectRows(const QList<qsizetype>& rows) {
    markSelected(rows);
    if (!rows.isEmpty() && !rows.contains(currentIndex().row())) {
        selectionModel()->setCurrentIndex(rows_->index(static_cast<int>(rows.front())),
                                          QItemSelectionModel::NoUpdate);
    }
}

void DQDownloadList::markSelected(const QList<qsizetype>& rows) {
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

/// Keys act on the current row, which Qt moves by where rows come and go.
void DQDownloadList::restoreCurrentRow(const engine::DQDownload* download) {
    int row = download == nullptr ? -1 : rows_->row(*download);
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    if (row < 0 && !selected.isEmpty())
        row = std::min_element(selected.begin(), selected.end())->row();
    if (row >= 0)
        selectionModel()->setCurrentIndex(rows_->index(row), QItemSelectionModel::NoUpdate);
}

void DQDownloadList::scrollToSelection() {
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    if (!selected.isEmpty()) {
        updateGeometries();  // The view may have been resized a moment ago.
        scrollTo(*std::min_element(selected.begin(), selected.end()), EnsureVisible);
    }
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
    placeOffers();
}

void DQDownloadList::setFilteredOut(bool isFilteredOut) {
    if (std::exchange(emptyText_.isFilteredOut, isFilteredOut) != isFilteredOut) {
        placeOffers();
        viewport()->update();
    }
}

/// Under the text, as long as there is room for both and nothing is dragged over it.
void DQDownloadList::placeOffers() {
    constexpr int margin = 20, gap = 10;
    const QSize size = offers_->sizeHint();
    const int textHeight = EmptyListText::height(font());
    const int height = textHeight + gap + size.height();
    const QSize room = viewport()->size() - QSize(2 * margin, 2 * margin);
    const bool isShown = !hasItems() && !emptyText_.isFilteredOut && !emptyText_.isDraggingTarget &&
                         emptyText_.maskAlpha <= 0 && size.width() <= room.width() &&
                         height <= room.height();
    offersHeight_ = isShown ? gap + size.height() : 0;
    offers_->setVisible(isShown);
    const int top = (viewport()->height() - height) / 2 + textHeight + gap;
    offers_->setGeometry({QPoint((viewport()->width() - size.width()) / 2, top), size});
}

void DQDownloadList::resizeEvent(QResizeEvent* event) {
    QListView::resizeEvent(event);
    placeOffers();
}

void DQDownloadList::fadeInStep() {
    emptyText_.maskAlpha -= 0.15;
    if (emptyText_.maskAlpha <= 0) {
        emptyText_.maskAlpha = 0;
        fade_.stop();
        placeOffers();
    }
    viewport()->update();
}

void DQDownloadList::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    if (!hasItems()) {
        painter.setFont(font());
        emptyText_.paint(painter, viewport()->rect(), offersHeight_, palette());
        return;
    }
    paintRows(painter, event->rect());
    paintMarks(painter);
    paintDropMark(painter);
}

void DQDownloadList::paintRows(QPainter& painter, const QRect& area) {
    DQDownloadCell::Surroundings surroundings;
    surroundings.separator = separatorColor(palette());
    surroundings.stripesOffset = stripes_->offset();
    surroundings.direction = layoutDirection();
    surroundings.devicePixelRatio = devicePixelRatioF();
    surroundings.isActiveWindow = isActiveWindow();
    surroundings.style = static_cast<ProgressBarStyle>(std::clamp<qint64>(
        platform::standardDefaults().get(app::settings::progressBarStyle), 0, 3));

    const RowColors plain = rowColors(palette(), surroundings.style, false, isActiveWindow());
    const RowColors selected = rowColors(palette(), surroundings.style, true, isActiveWindow());
    const PlacedButton pointedAt = pointer_ ? buttonUnder(*pointer_) : PlacedButton();
    const int offset = verticalOffset();
    const int count = rows_->rowCount();
    int row = rowAtContentY(area.top() + offset);
    int top = topOfRow(row) - offset;
    const QItemSelectionModel* selection = selectionModel();
    for (; row < count && top <= area.bottom(); ++row) {
        const int height = heightOfRow(row);
        const engine::DownloadPtr download = rows_->download(row);
        cell_.reflectDownload(state_, *download, true);
        surroundings.row = QRect(0, top, viewport()->width(), height);
        surroundings.isSelected = selection->isSelected(rows_->index(row));
        surroundings.colors = surroundings.isSelected ? selected : plain;
        surroundings.buttonUnderPointer = row == pointedAt.row ? pointedAt.index : 0;
        surroundings.drawsBottomSeparator =
            row + 1 == count || !selection->isSelected(rows_->index(row + 1));
        cell_.paint(painter, surroundings);
        if (cell_.hasStripes()) {
            stripes_->noteStripes(surroundings.row);
        }
        top += height;
    }
    if (top <= area.bottom()) {
        painter.fillRect(QRect(area.left(), top, area.width(), area.bottom() - top + 1),
                         palette().color(QPalette::Base));
    }
}

/// Around rows that something is about though they are not selected.
void DQDownloadList::paintMarks(QPainter& painter) const {
    const auto mark = [&](const QModelIndex& index) {
        if (index.isValid() && !selectionModel()->isSelected(index)) {
            painter.setPen(palette().color(QPalette::Highlight));
            painter.drawRect(visualRect(index).adjusted(0, 0, -1, -2));
        }
    };
    mark(rows_->index(menuRow_));
    if (hasFocus() && isFocusShown_) {
        mark(currentIndex());
    }
}

void DQDownloadList::changeEvent(QEvent* event) {
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        geometry_ = RowGeometry(font());
        updateGeometries();
        placeOffers();
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
    viewport()->update();
    Q_EMIT selectionMade(selectedRows());
}

QList<qsizetype> DQDownloadList::selectedRows() const {
    QList<qsizetype> rows;
    for (const QModelIndex& index : selectionModel()->selectedIndexes()) {
        rows.push_back(index.row());
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

void DQDownloadList::setMenuRow(int row) {
    menuRow_ = row;
    viewport()->update();
}

bool DQDownloadList::isAlternateFunctionalityEvent() const {
    return state_.actions().isAlternateFunctionalityEvent();
}

void DQDownloadList::setDropMark(const DropMark& mark) {
    const bool choosesFolder = isAlternateFunctionalityEvent();
    if (mark != dropMark_ || choosesFolder != emptyText_.choosesFolder) {
        dropMark_ = mark;
        emptyText_.isDraggingTarget = mark.kind == DropMark::Kind::WholeList;
        emptyText_.choosesFolder = choosesFolder;
        placeOffers();
        viewport()->update();
    }
}

void DQDownloadList::paintDropMark(QPainter& painter) const {
    if (dropMark_.kind == DropMark::Kind::None) {
        return;
    }
    const QColor color = palette().color(QPalette::Highlight);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 2));
    painter.setBrush(Qt::NoBrush);
    if (dropMark_.kind == DropMark::Kind::WholeList) {
        painter.drawRoundedRect(QRectF(viewport()->rect()).adjusted(2, 2, -2, -2), 4, 4);
        return;
    }
    const int width = viewport()->width();
    const qreal y =
        std::clamp(topOfRow(dropMark_.row) - verticalOffset() - 1, 3, viewport()->height() - 3);
    painter.drawLine(QPointF(8, y), QPointF(width - 2, y));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawEllipse(QPointF(5, y), 2.5, 2.5);
}

}  // namespace ui
