#include "ui/window/rubber_window.h"

#include <QEvent>
#include <QMainWindow>
#include <QScreen>
#include <algorithm>
#include <chrono>

#include "app/settings.h"
#include "engine/settings.h"
#include "platform/base/user_defaults.h"
#include "ui/list/download_list.h"
#include "ui/list/download_list_model.h"
#include "ui/list/vanishing_rows.h"

namespace ui {

using namespace std::chrono_literals;

int rubberHeight(const RubberMeasures& measures) {
    int listHeight = measures.rowHeight;
    if (measures.numberOfRows > 1 && measures.contentHeight >= measures.rowHeight) {
        listHeight = measures.contentHeight + (measures.isCollapsing ? 1 : 0);
    }
    const int height = listHeight + measures.otherHeight;
    if (measures.numberOfRows < 2) {
        return height;
    }
    return std::max(std::min(height, measures.roomHeight), measures.minimumHeight);
}

int correctedWindowHeight(int height, int minimumHeight, int rowHeight) {
    return height > minimumHeight ? minimumHeight + (height - minimumHeight) / rowHeight * rowHeight
                                  : height;
}

RubberWindow::RubberWindow(QMainWindow& window, DQDownloadList& list,
                           platform::UserDefaults& defaults)
    : window_(window), list_(list), defaults_(defaults) {
    animation_.setDuration(180);
    animation_.setEasingCurve(QEasingCurve::OutCubic);
    connect(&animation_, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { setHeight(value.toInt()); });
    connect(&animation_, &QVariantAnimation::stateChanged, this,
            [this](QAbstractAnimation::State state) {
                const bool grows = state == QAbstractAnimation::Running && mayShowAll_ &&
                                   animation_.endValue().toInt() > window_.height();
                list_.setVerticalScrollBarPolicy(grows ? Qt::ScrollBarAlwaysOff
                                                       : Qt::ScrollBarAsNeeded);
            });
    snap_.setSingleShot(true);
    snap_.setInterval(150ms);
    connect(&snap_, &QTimer::timeout, this, &RubberWindow::snapHeight);
    connect(&list, &DQDownloadList::contentHeightChanged, this,
            [this] { updateRubberWindow(list_.vanishingRows()->collapsingRows().empty()); });
    window.installEventFilter(this);
    observation_ = defaults.observe([this](const QString& key) {
        if (key == app::settings::rubberWindow.name()) {
            updateRubberWindow(true);
        }
    });
    updateRubberWindow(false);
}

bool RubberWindow::isOn() const {
    return defaults_.get(app::settings::rubberWindow);
}

RubberMeasures RubberWindow::measures() const {
    RubberMeasures measures;
    measures.rowHeight = list_.rowHeight();
    measures.contentHeight = list_.contentHeight();
    measures.numberOfRows = list_.rows().rowCount();
    measures.isCollapsing = !list_.vanishingRows()->collapsingRows().empty();
    measures.otherHeight = window_.height() - list_.viewport()->height();
    measures.minimumHeight = window_.minimumSizeHint().height();
    // The bottom frame also needs its place.
    const int frame = window_.frameGeometry().bottom() - window_.geometry().bottom();
    measures.roomHeight =
        window_.screen()->availableGeometry().bottom() + 1 - window_.geometry().top() - frame;
    return measures;
}

void RubberWindow::updateRubberWindow(bool animated) {
    const bool on = isOn();
    if (!on) {
        if (std::exchange(wasOn_, false)) {
            animation_.stop();
            fixHeight(false);
        }
        return;
    }
    wasOn_ = true;
    animation_.stop();
    if (window_.isFullScreen() || window_.isMaximized()) {
        return;
    }
    const RubberMeasures measured = measures();
    const int wanted = rubberHeight(measured);
    mayShowAll_ = wanted < measured.roomHeight;
    if (wanted == window_.height()) {
        fixHeight(true);
        return;
    }
    if (animated && window_.isVisible() && defaults_.get(engine::settings::uselessAnimations)) {
        animation_.setStartValue(window_.height());
        animation_.setEndValue(wanted);
        animation_.start();
    } else {
        setHeight(wanted);
    }
}

void RubberWindow::setHeight(int height) {
    fixHeight(false);
    window_.resize(window_.width(), height);
    window_.setMinimumHeight(height);
    window_.setMaximumHeight(height);
}

void RubberWindow::fixHeight(bool isFixed) {
    window_.setMinimumHeight(isFixed ? window_.height() : 0);
    window_.setMaximumHeight(isFixed ? window_.height() : QWIDGETSIZE_MAX);
}

bool RubberWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Move || event->type() == QEvent::Show) {
        // The screen may be another one.
        if (animation_.state() != QAbstractAnimation::Running) {
            updateRubberWindow(event->type() == QEvent::Move);
        }
    } else if (event->type() == QEvent::Resize && event->spontaneous() && !isOn() &&
               list_.isAlternateFunctionalityEvent()) {
        snap_.start();
    }
    return QObject::eventFilter(watched, event);
}

void RubberWindow::snapHeight() {
    const int height = correctedWindowHeight(
        window_.height(), window_.height() - list_.viewport()->height(), list_.rowHeight());
    if (!window_.isMaximized() && !window_.isFullScreen()) {
        window_.resize(window_.width(), height);
    }
}

}  // namespace ui
