#include "ui/window/window_frame.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStringList>
#include <QWidget>
#include <algorithm>
#include <utility>

#include "app/settings.h"
#include "engine/settings.h"
#include "platform/base/user_defaults.h"
#include "ui/settings.h"

namespace ui {
namespace {

/// Taller windows do not spring.
constexpr int tallWindow = 500;
constexpr int springDuration = 260;
constexpr int fadeDuration = 180;
/// How much of the spring is the way down.
constexpr double wayDown = 0.4;
/// What the desktop draws above a window, which is not known before it is up.
constexpr int titleBarHeight = 30;

const QString maximizedMark = QStringLiteral("maximized");

/// How far the window is open, 1 being wholly; `progress` from 0 to 1.
double springOpening(double progress) {
    if (progress < wayDown) {
        return 1 - progress / wayDown;
    }
    return QEasingCurve(QEasingCurve::OutBack)
        .valueForProgress((progress - wayDown) / (1 - wayDown));
}

/// Null: it is none.
QRect storedRect(const QStringList& words) {
    if (words.size() < 4) {
        return {};
    }
    const QRect rect(words[0].toInt(), words[1].toInt(), words[2].toInt(), words[3].toInt());
    return rect.isValid() ? rect : QRect();
}

/// How well a screen shows the frame; the area that it shows, or less than nothing.
qint64 worth(const QRect& screen, const QRect& frame) {
    const QRect shown = screen & frame;
    return shown.isEmpty() ? -(screen.center() - frame.center()).manhattanLength()
                           : qint64{shown.width()} * shown.height();
}

}  // namespace

QRect frameOnScreens(const QRect& frame, const QList<QRect>& screens) {
    const QRect screen = *std::max_element(
        screens.begin(), screens.end(),
        [&](const QRect& a, const QRect& b) { return worth(a, frame) < worth(b, frame); });
    const QSize size = frame.size().boundedTo(screen.size());
    return {QPoint(std::clamp(frame.left(), screen.left(), screen.right() + 1 - size.width()),
                   std::clamp(frame.top(), screen.top(), screen.bottom() + 1 - size.height())),
            size};
}

QRect roomForWindows(const QScreen& screen) {
    return screen.availableGeometry().adjusted(0, titleBarHeight, 0, 0);
}

WindowFrame::WindowFrame(QWidget& window, const QWidget& list, platform::UserDefaults& defaults)
    : window_(window), list_(list), defaults_(defaults) {
    animation_.setStartValue(0.0);
    animation_.setEndValue(1.0);
    connect(&animation_, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { step(value.toDouble()); });
    connect(&animation_, &QVariantAnimation::finished, this, &WindowFrame::settle);
    observation_ = defaults.observe([this](const QString& key) {
        if (key == app::settings::fullScreenModeBehavior.name() && window_.isFullScreen() &&
            defaults_.get(app::settings::fullScreenModeBehavior) != 1) {
            window_.setWindowState(window_.windowState() & ~Qt::WindowFullScreen);
        }
    });
}

void WindowFrame::restore(const QSize& usual) {
    const QStringList stored = defaults_.get(settings::mainWindowFrame).split(u' ');
    QRect frame = storedRect(stored);
    QList<QRect> rooms;
    if (frame.isNull()) {
        frame.setSize(usual);
        rooms.append(roomForWindows(*window_.screen()));
        frame.moveCenter(rooms.front().center());
    } else {
        for (const QScreen* screen : QGuiApplication::screens()) {
            rooms.append(roomForWindows(*screen));
        }
    }
    window_.setGeometry(rooms.isEmpty() ? frame : frameOnScreens(frame, rooms));
    if (stored.contains(maximizedMark)) {
        window_.setWindowState(window_.windowState() | Qt::WindowMaximized);
    }
}

void WindowFrame::stopAnimation() {
    animation_.stop();
    settle();
}

void WindowFrame::save() {
    stopAnimation();
    const bool isNormal = !(window_.windowState() &
                            (Qt::WindowMaximized | Qt::WindowFullScreen | Qt::WindowMinimized));
    const QRect frame = isNormal ? window_.geometry() : window_.normalGeometry();
    QString text = QStringLiteral("%1 %2 %3 %4")
                       .arg(frame.x())
                       .arg(frame.y())
                       .arg(frame.width())
                       .arg(frame.height());
    if (window_.isMaximized()) {
        text += u' ' + maximizedMark;
    }
    defaults_.set(settings::mainWindowFrame, text);
}

bool WindowFrame::mayAnimate() const {
    return window_.isVisible() && defaults_.get(engine::settings::uselessAnimations) &&
           !window_.isMinimized();
}

bool WindowFrame::mayCollapse() const {
    return !defaults_.get(app::settings::rubberWindow) && window_.height() < tallWindow &&
           !(window_.windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen));
}

void WindowFrame::start(int milliseconds) {
    frame_ = window_.geometry();
    minimumSize_ = window_.minimumSize();
    collapsedHeight_ = window_.height() - list_.height() + 1;
    animation_.setDuration(milliseconds);
    animation_.start();
}

bool WindowFrame::collapseAndSpringOpen(const std::function<void()>& update) {
    if (animation_.state() == QAbstractAnimation::Running || !mayAnimate() || !mayCollapse()) {
        return false;
    }
    update_ = update;
    start(springDuration);
    return true;
}

void WindowFrame::fadeOut() {
    save();
    if (!mayAnimate()) {
        window_.hide();
        return;
    }
    isFading_ = true;
    collapses_ = mayCollapse();
    start(fadeDuration);
}

void WindowFrame::step(double progress) {
    if (isFading_) {
        window_.setWindowOpacity(1 - progress);
        if (collapses_) {
            openTo(1 - progress);
        }
        return;
    }
    if (progress >= wayDown && update_) {
        std::exchange(update_, {})();
    }
    openTo(springOpening(progress));
}

void WindowFrame::openTo(double opening) {
    QRect rect = frame_;
    rect.setHeight(collapsedHeight_ +
                   static_cast<int>((frame_.height() - collapsedHeight_) * opening));
    rect.moveCenter(frame_.center());
    window_.setMinimumHeight(collapsedHeight_);
    window_.setGeometry(rect);
}

void WindowFrame::settle() {
    if (update_) {
        std::exchange(update_, {})();
    }
    const bool fades = std::exchange(isFading_, false);
    if (fades) {
        window_.hide();
        window_.setWindowOpacity(1);
    }
    if (frame_.isValid()) {
        window_.setMinimumSize(minimumSize_);
        window_.setGeometry(std::exchange(frame_, QRect()));
    }
    if (fades) {
        Q_EMIT fadedOut();
    }
}

}  // namespace ui
