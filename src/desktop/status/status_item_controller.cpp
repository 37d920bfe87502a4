#include "desktop/status/status_item_controller.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <algorithm>

#include "desktop/settings.h"
#include "desktop/status/drag_and_drop_destination.h"
#include "platform/base/user_defaults.h"

namespace desktop {
namespace {

constexpr platform::Seconds animationStep = 0.1;
constexpr int animationSteps = 3;

/// What is no number stands for the usual delay.
platform::Seconds springActionDelay(const platform::UserDefaults& defaults) {
    const auto& setting = settings::statusItemDragSpringActionDelay;
    bool isNumber = false;
    const double delay = defaults.objectForKey(setting.name()).toDouble(&isNumber);
    return isNumber ? delay : setting.fallback();
}

}  // namespace

QImage imageHighlightedWithColor(const QImage& image, const QColor& color) {
    QImage highlighted = image;
    QPainter painter(&highlighted);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.setOpacity(0.5);
    painter.fillRect(highlighted.rect(), color);
    return highlighted;
}

DQStatusItemController::DQStatusItemController(const platform::UserDefaults& defaults,
                                               platform::RunLoop& loop)
    : defaults_(defaults), springLoad_(loop), animation_(loop) {}

void DQStatusItemController::setDragAndDropDestination(
    DQStatusItemDragAndDropDestination* destination) {
    draggingExited();
    _dragAndDropDestination = destination;
}

void DQStatusItemController::setStatusItemImage(const QImage& image) {
    _statusItemImage = image;
    show(highlight_);
}

bool DQStatusItemController::draggingEntered(const QStringList& types,
                                             const app::Pasteboard& pasteboard) {
    draggingExited();
    const auto isAccepted = [&](const QString& type) {
        return _dragAndDropDestination->draggedTypesAcceptedByStatusItem().contains(type);
    };
    if (!_dragAndDropDestination || std::none_of(types.begin(), types.end(), isAccepted)) {
        return false;
    }
    _isDraggingMouseInside = true;
    _isVisible = _dragAndDropDestination->canDropPasteboard(pasteboard);
    highlightForSpringLoading();
    return _isVisible;
}

void DQStatusItemController::draggingExited() {
    if (!_isDraggingMouseInside) {
        return;
    }
    _isDraggingMouseInside = false;
    _isVisible = false;
    springLoad_.cancel();
    if (!animation_.isActive()) {
        show(Highlight::None);
    }
}

bool DQStatusItemController::performDragOperation(const app::Pasteboard& pasteboard) {
    const bool isTaken =
        _dragAndDropDestination && _dragAndDropDestination->dropPasteboard(pasteboard);
    if (isTaken) {
        animate();
    }
    draggingExited();
    return isTaken;
}

void DQStatusItemController::highlightForSpringLoading() {
    show(Highlight::Selected);
    const platform::Seconds delay = springActionDelay(defaults_);
    if (delay > 0) {
        springLoad_.start(delay, [this] { triggerSpringLoad(); });
    } else {
        triggerSpringLoad();
    }
}

void DQStatusItemController::triggerSpringLoad() {
    if (_dragAndDropDestination && _dragAndDropDestination->springLoadStatusItem()) {
        animate();
    }
}

void DQStatusItemController::animate() {
    if (!animation_.isActive()) {
        performAnimationStep();
    }
}

void DQStatusItemController::performAnimationStep() {
    if (_animationStepCounter == animationSteps) {
        _animationStepCounter = 0;
        show(_isVisible ? Highlight::Selected : Highlight::None);
        return;
    }
    show(_animationStepCounter % 2 == 0 ? Highlight::Pale : Highlight::Selected);
    ++_animationStepCounter;
    animation_.start(animationStep, [this] { performAnimationStep(); });
}

void DQStatusItemController::show(Highlight highlight) {
    highlight_ = highlight;
    if (_statusItemImage.isNull() || highlight == Highlight::None) {
        shownImage_ = _statusItemImage;
    } else {
        shownImage_ = imageHighlightedWithColor(
            _statusItemImage,
            highlight == Highlight::Pale
                ? QColor(Qt::lightGray)
                : QGuiApplication::palette().color(QPalette::Active, QPalette::Highlight));
    }
    Q_EMIT imageChanged();
}

}  // namespace desktop
