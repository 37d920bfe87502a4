#pragma once

#include <QObject>
#include <QRect>
#include <QVariantAnimation>
#include <functional>

class QWidget;

namespace platform {
class UserDefaults;
}

namespace ui {

/// Where the main window stands: kept over restarts, and left for a moment when the first rows
/// come.
class WindowFrame final : public QObject {
    Q_OBJECT

public:
    /// Both outlive it.
    WindowFrame(QWidget& window, platform::UserDefaults& defaults);

    /// As it was, on a screen that is there, or else in the middle of one.
    void restore();
    void save();

    /// Collapses the window towards its middle, calls `update` and lets it spring open again.
    /// False: nothing was done and `update` not called.
    bool collapseAndSpringOpen(const std::function<void()>& update);

private:
    [[nodiscard]] bool mayAnimate() const;
    void settle();

    QWidget& window_;
    platform::UserDefaults& defaults_;
    QVariantAnimation animation_;
    QRect frame_;
    QSize minimumSize_;
    std::function<void()> update_;
};

}  // namespace ui
