#include "ui/window/approaching_end.h"

#include <QEvent>
#include <QGuiApplication>

#include "app/main_controller.h"

namespace ui {

ApproachingEnd::ApproachingEnd(const app::DQMainController& controller) {
    connect(&controller, &app::DQMainController::terminated, this, [this] {
        isCertain_ = true;
        Q_EMIT announced();
    });
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [this] {
        isAnnounced_ = true;
        qGuiApp->installEventFilter(this);
        Q_EMIT announced();
    });
}

bool ApproachingEnd::eventFilter(QObject* /*watched*/, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::InputMethod:
        case QEvent::MouseButtonPress:
        case QEvent::TouchBegin:
        case QEvent::Drop:
            isAnnounced_ = false;
            qGuiApp->removeEventFilter(this);
            break;
        default:
            break;
    }
    return false;
}

}  // namespace ui
