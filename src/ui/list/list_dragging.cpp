#include "ui/list/list_dragging.h"

#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QUrl>
#include <algorithm>
#include <chrono>

#include "app/main_controller.h"
#include "ui/list/download_list.h"
#include "ui/list/download_list_model.h"
#include "ui/window/pasteboard_contents.h"

namespace ui {

using namespace std::chrono_literals;

namespace {

constexpr int scrollMargin = 24;
constexpr int mostPicturedRows = 5;

/// Whatever modifiers are held, which for other programs would mean to move or to link: what is
/// taken in stays with its source.
void acceptAsCopy(QDropEvent& event) {
    event.setDropAction(event.possibleActions() & Qt::CopyAction ? Qt::CopyAction : Qt::LinkAction);
    event.accept();
}

QPixmap pictureOfRows(const DQDownloadList& list, const QList<qsizetype>& rows) {
    QRect area;
    for (qsizetype index = 0; index < std::min<qsizetype>(rows.size(), mostPicturedRows); ++index) {
        area |= list.visualRect(list.rows().index(static_cast<int>(rows[index])));
    }
    area &= list.viewport()->rect();
    QPixmap picture = list.viewport()->grab(area);
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(picture.rect(), QColor(0, 0, 0, 170));
    return picture;
}

}  // namespace

ListDragging::ListDragging(DQDownloadList& list, app::DQMainController& controller)
    : list_(list), controller_(controller) {
    list.setAcceptDrops(true);
    list.viewport()->setAcceptDrops(true);
    list.viewport()->installEventFilter(this);
    connect(&list, &DQDownloadList::dragWanted, this, &ListDragging::startDrag);
    scroll_.setInterval(30ms);
    connect(&scroll_, &QTimer::timeout, this, [this] {
        QScrollBar* bar = list_.verticalScrollBar();
        bar->setValue(bar->value() + scrollStep_);
    });
}

bool ListDragging::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::DragEnter: {
            auto& drag = static_cast<QDropEvent&>(*event);
            isAcceptable_ = drag.source() == &list_ || mayHoldAddresses(*drag.mimeData());
            event->setAccepted(isAcceptable_);
            validate(drag);
            return true;
        }
        case QEvent::DragMove: {
            auto& drag = static_cast<QDropEvent&>(*event);
            event->setAccepted(validate(drag));
            scrollNear(drag.position().toPoint());
            return true;
        }
        case QEvent::DragLeave:
            clearMark();
            return true;
        case QEvent::Drop: {
            const bool didDrop = drop(static_cast<QDropEvent&>(*event));
            event->setAccepted(didDrop);
            clearMark();
            return true;
        }
        default:
            return QObject::eventFilter(watched, event);
    }
}

void ListDragging::clearMark() {
    scroll_.stop();
    list_.setDropMark({});
}

void ListDragging::scrollNear(const QPoint& point) {
    const int height = list_.viewport()->height();
    scrollStep_ = point.y() < scrollMargin            ? -scrollMargin / 2
                  : point.y() > height - scrollMargin ? scrollMargin / 2
                                                      : 0;
    if (scrollStep_ == 0) {
        scroll_.stop();
    } else if (!scroll_.isActive()) {
        scroll_.start();
    }
}

qsizetype ListDragging::rowAt(const QPoint& point) const {
    const QModelIndex index = list_.indexAt(point);
    if (!index.isValid()) {
        return list_.rows().rowCount();
    }
    return index.row() + (point.y() > list_.visualRect(index).center().y() ? 1 : 0);
}

bool ListDragging::validate(QDropEvent& event) {
    if (!isAcceptable_) {
        return false;
    }
    if (event.source() != &list_) {
        acceptAsCopy(event);
        list_.setDropMark({DropMark::Kind::WholeList, 0});
        return true;
    }
    const qsizetype row = rowAt(event.position().toPoint());
    if (!controller_.canDropRows(_draggedDownloads, row)) {
        list_.setDropMark({});
        return false;
    }
    event.setDropAction(Qt::MoveAction);
    list_.setDropMark({DropMark::Kind::AboveRow, static_cast<int>(row)});
    return true;
}

bool ListDragging::drop(QDropEvent& event) {
    if (!validate(event)) {
        return false;
    }
    if (event.source() != &list_) {
        return controller_.dropPasteboard(pasteboardFromMimeData(*event.mimeData()));
    }
    return controller_.dropRows(std::exchange(_draggedDownloads, {}),
                                rowAt(event.position().toPoint()));
}

std::unique_ptr<QMimeData> ListDragging::mimeData() const {
    auto data = std::make_unique<QMimeData>();
    data->setData(QString::fromUtf16(internalType), {});
    QList<QUrl> files;
    for (const engine::DownloadPtr& download : _draggedDownloads) {
        if (download->status() != engine::DQDownloadStatusDone || !download->fileExists()) {
            return data;
        }
        files.append(QUrl::fromLocalFile(download->path()));
    }
    data->setUrls(files);
    return data;
}

void ListDragging::startDrag(const QList<qsizetype>& rows) {
    if (!controller_.canDragRows(rows)) {
        return;
    }
    _draggedDownloads.clear();
    for (const qsizetype row : rows) {
        _draggedDownloads.push_back(controller_.downloadAtSortedAndFilteredIndex(row));
    }
    auto* drag = new QDrag(&list_);
    auto data = mimeData();
    const bool holdsFiles = data->hasUrls();
    drag->setMimeData(data.release());
    drag->setPixmap(pictureOfRows(list_, rows));
    drag->setHotSpot({20, list_.rowHeight() / 2});
    drag->exec(holdsFiles ? Qt::CopyAction | Qt::MoveAction : Qt::DropActions(Qt::MoveAction),
               holdsFiles ? Qt::CopyAction : Qt::MoveAction);
    _draggedDownloads.clear();
}

}  // namespace ui
