#pragma once

#include <QList>
#include <QObject>
#include <QRect>
#include <QVariantAnimation>
#include <functional>

#include "platform/base/observation.h"

class QScreen;
class QWidget;

namespace platform {
class UserDefaults;
}

namespace ui {

/// The frame, moved and cut so that the screen that shows most of it, or else the nearest, shows
/// all of it. `screens`: what windows may cover of each; not empty. All in the desktop's
/// coordinates.
[[nodiscard]] QRect frameOnScreens(const QRect& frame, const QList<QRect>& screens);

/// What windows may cover of a screen, below their title bars.
[[nodiscard]] QRect roomForWindows(const QScreen& screen);

/// Where the main window stands: kept over restarts, and left for a moment when the first rows
/// come, and for good when the program ends.
class WindowFrame final : public QObject {
    Q_OBJECT

public:
    /// `list`: what gives way when the window collapses. All outlive it.
    WindowFrame(QWidget& window, const QWidget& list, platform::UserDefaults& defaults);

    /// As it was, on a screen that is there, or else `usual` in the middle of one, as far as there
    /// is room.
    void restore(const QSize& usual);
    void save();

    /// Collapses the window towards its middle, calls `update` and lets it spring open again.
    /// False: nothing was done and `update` not called.
    bool collapseAndSpringOpen(const std::function<void()>& update);

    /// Saves the frame and lets the window shrink and fade away.
    void fadeOut();
    [[nodiscard]] bool isFading() const { return isFading_; }
    /// Puts the window where the animation would have left it: one that fades is gone at once.
    void stopAnimation();

Q_SIGNALS:
    /// Once for each fading, by itself or cut short: the end of the program waits for it.
    void fadedOut();

private:
    [[nodiscard]] bool mayAnimate() const;
    [[nodiscard]] bool mayCollapse() const;
    void start(int milliseconds);
    void step(double progress);
    /// 0: collapsed, 1: wholly.
    void openTo(double opening);
    void settle();

    QWidget& window_;
    const QWidget& list_;
    platform::UserDefaults& defaults_;
    QVariantAnimation animation_;
    /// What the window goes back to. Null: it is there.
    QRect frame_;
    QSize minimumSize_;
    int collapsedHeight_ = 0;
    bool isFading_ = false;
    bool collapses_ = false;
    std::function<void()> update_;
    platform::Observation observation_;
};

}  // namespace ui
