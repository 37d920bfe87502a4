#include "ui/status/drop_target.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QWindow>

#include "desktop/settings.h"
#include "desktop/status/drop_target_place.h"
#include "desktop/status/status_item_controller.h"
#include "platform/base/log.h"
#include "platform/base/user_defaults.h"
#include "ui/text.h"
#include "ui/window/pasteboard_contents.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

constexpr int margin = 4;
constexpr qreal roundness = 10;

QList<desktop::ScreenRoom> screenRooms() {
    QList<desktop::ScreenRoom> rooms;
    for (const QScreen* screen : QGuiApplication::screens()) {
        rooms.append({screen->name(), screen->availableGeometry()});
    }
    return rooms;
}

QPainterPath outline(const QRectF& frame) {
    QPainterPath path;
    path.addRoundedRect(frame, roundness, roundness);
    return path;
}

}  // namespace

DropTarget::DropTarget(desktop::DQStatusItemController& controller,
                       platform::UserDefaults& defaults)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus),
      controller_(controller),
      defaults_(defaults),
      others_(*this) {
    setObjectName(u"dropTarget"_s);
    setWindowTitle(translated("Orlop Drop Target"));
    setAccessibleName(windowTitle());
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAcceptDrops(true);
    taskBarEntry_.setShown(false);
    connect(&controller, &desktop::DQStatusItemController::imageChanged, this,
            qOverload<>(&QWidget::update));
    connect(&others_, &StackedWindows::changed, this, &DropTarget::keepOutOfTheWay);
    observation_ = defaults.observe([this](const QString& key) {
        if (key == desktop::settings::dropTargetPlace.name() ||
            key == desktop::settings::statusItemWidth.name()) {
            place();
        }
    });
    followScreens();
    place();
}

void DropTarget::followScreens() {
    const auto follow = [this](QScreen* screen) {
        connect(screen, &QScreen::availableGeometryChanged, this, &DropTarget::place);
        connect(screen, &QScreen::geometryChanged, this, &DropTarget::place);
    };
    for (QScreen* screen : QGuiApplication::screens()) {
        follow(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this, follow](QScreen* screen) {
        follow(screen);
        place();
    });
    // Its name is still on the list when a screen says that it goes.
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &DropTarget::place,
            Qt::QueuedConnection);
}

void DropTarget::place() {
    const QList<desktop::ScreenRoom> rooms = screenRooms();
    if (rooms.isEmpty()) {
        return;
    }
    const int width = desktop::dropTargetWidth(defaults_.get(desktop::settings::statusItemWidth));
    const auto at = desktop::placeFromText(defaults_.get(desktop::settings::dropTargetPlace));
    const QRect frame = desktop::frameAtPlace(at, {width, width}, rooms);
    setFixedSize(frame.size());
    move(frame.topLeft());
}

void DropTarget::setWanted(bool isWanted) {
    isWanted_ = isWanted;
    if (isWanted) {
        place();
    }
    keepOutOfTheWay();
}

void DropTarget::keepOutOfTheWay() {
    const bool isInTheWay =
        isWanted_ && desktop::wouldCoverFullScreenWindow(others_.windows(), geometry());
    setVisible(isWanted_ && !isInTheWay);
}

bool DropTarget::isCovered() const {
    const auto covering = desktop::coveringWindow(
        others_.windows(), geometry(),
        defaults_.get(desktop::settings::statusItemVisibilityCheckRespondsToAllWindows));
    if (covering) {
        platform::debugLog([&] {
            return u"[DQStatusItemController] status item covered by window: %1"_s.arg(
                covering->name);
        });
    }
    return covering.has_value();
}

void DropTarget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.fillPath(outline(rect()), palette().window());
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawPath(outline(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5)));
    if (controller_.isVisible()) {
        QColor color = palette().color(QPalette::Highlight);
        color.setAlphaF(0.15F);
        painter.fillPath(outline(rect()), color);
    }
    painter.drawImage(rect().adjusted(margin, margin, -margin, -margin), controller_.image());
}

/// Not every desktop can show what is behind the corners.
void DropTarget::resizeEvent(QResizeEvent*) {
    setMask(QRegion(outline(rect()).toFillPolygon().toPolygon()));
}

void DropTarget::showEvent(QShowEvent*) {
    sinceShown_.start();
}

/// A window manager that is slow to learn of a new window may put it elsewhere at first.
void DropTarget::moveEvent(QMoveEvent*) {
    constexpr qint64 settlingMilliseconds = 3000;
    if (!isMoving_ && sinceShown_.isValid() && !sinceShown_.hasExpired(settlingMilliseconds)) {
        QMetaObject::invokeMethod(this, &DropTarget::place, Qt::QueuedConnection);
    }
}

void DropTarget::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        grip_ = event->position().toPoint();
    }
}

void DropTarget::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton)) {
        return;
    }
    const QPoint way = event->position().toPoint() - grip_;
    if (!isMoving_ && way.manhattanLength() < QApplication::startDragDistance()) {
        return;
    }
    if (!isMoving_ && QGuiApplication::platformName().startsWith(u"wayland")) {
        // There a window may not know, nor say, where it is.
        windowHandle()->startSystemMove();
        return;
    }
    isMoving_ = true;
    move(event->globalPosition().toPoint() - grip_);
}

void DropTarget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    if (!isMoving_) {
        Q_EMIT clicked();
        return;
    }
    isMoving_ = false;
    // The window itself may still lag behind: a window manager moves it when it likes.
    const QRect frame(event->globalPosition().toPoint() - grip_, size());
    const auto at = desktop::placeOfFrame(frame, screenRooms());
    defaults_.set(desktop::settings::dropTargetPlace, desktop::placeText(at));
    place();
}

void DropTarget::contextMenuEvent(QContextMenuEvent* event) {
    Q_EMIT menuWanted(event->globalPos());
}

/// Taken at first in any case, so that its leaving is heard of; the moves say whether it may drop.
void DropTarget::dragEnterEvent(QDragEnterEvent* event) {
    canDrop_ =
        !isCovered() && controller_.draggingEntered(event->mimeData()->formats(),
                                                    pasteboardFromMimeData(*event->mimeData()));
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void DropTarget::dragMoveEvent(QDragMoveEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(canDrop_);
}

void DropTarget::dragLeaveEvent(QDragLeaveEvent*) {
    controller_.draggingExited();
}

void DropTarget::dropEvent(QDropEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(
        controller_.performDragOperation(pasteboardFromMimeData(*event->mimeData())));
}

}  // namespace ui
