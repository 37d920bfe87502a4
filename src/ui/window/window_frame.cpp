#include "ui/window/window_frame.h"

#include <QScreen>
#include <QWidget>
#include <utility>

#include "app/settings.h"
#include "engine/settings.h"
#include "platform/base/user_defaults.h"
#include "ui/settings.h"

namespace ui {
namespace {

constexpr QSize usualSize(460, 420);
/// Taller windows do not spring.
constexpr int tallWindow = 500;
constexpr int collapsedHeight = 60;
constexpr int duration = 260;

/// The height on the way down to `collapsed` and back; `progress` from 0 to 1.
int heightAt(double progress, int full, int collapsed) {
    const double open =
        progress < 0.4
            ? 1 - progress / 0.4
            : QEasingCurve(QEasingCurve::OutBack).valueForProgress((progress - 0.4) / 0.6);
    return collapsed + static_cast<int>((full - collapsed) * open);
}

}  // namespace

WindowFrame::WindowFrame(QWidget& window, platform::UserDefaults& defaults)
    : window_(window), defaults_(defaults) {
    animation_.setDuration(duration);
    animation_.setStartValue(0.0);
    animation_.setEndValue(1.0);
    connect(&animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        if (value.toDouble() >= 0.4 && update_) {
            std::exchange(update_, {})();
        }
        QRect rect = frame_;
        rect.setHeight(heightAt(value.toDouble(), frame_.height(), collapsedHeight));
        rect.moveCenter(frame_.center());
        window_.setGeometry(rect);
    });
    connect(&animation_, &QVariantAnimation::finished, this, &WindowFrame::settle);
}

void WindowFrame::restore() {
    const QByteArray stored =
        defaults_.objectForKey(settings::mainWindowFrame.name()).toByteArray();
    if (stored.isEmpty() || !window_.restoreGeometry(stored)) {
        window_.resize(usualSize);
        const QRect room = window_.screen()->availableGeometry();
        window_.move(room.center() - window_.rect().center());
    }
}

void WindowFrame::save() {
    animation_.stop();
    settle();
    defaults_.setObject(settings::mainWindowFrame.name(), window_.saveGeometry());
}

bool WindowFrame::mayAnimate() const {
    return window_.isVisible() && defaults_.get(engine::settings::uselessAnimations) &&
           !defaults_.get(app::settings::rubberWindow) && window_.height() < tallWindow &&
           !(window_.windowState() &
             (Qt::WindowMaximized | Qt::WindowMinimized | Qt::WindowFullScreen));
}

bool WindowFrame::collapseAndSpringOpen(const std::function<void()>& update) {
    if (animation_.state() == QAbstractAnimation::Running || !mayAnimate()) {
        return false;
    }
    frame_ = window_.geometry();
    minimumSize_ = window_.minimumSize();
    window_.setMinimumHeight(collapsedHeight);
    update_ = update;
    animation_.start();
    return true;
}

void WindowFrame::settle() {
    if (update_) {
        std::exchange(update_, {})();
    }
    if (frame_.isValid()) {
        window_.setMinimumSize(minimumSize_);
        window_.setGeometry(std::exchange(frame_, QRect()));
    }
}

}  // namespace ui
