#pragma once

#include <QList>
#include <QRect>
#include <QString>
#include <optional>

namespace desktop {

/// Another program's window on the screen.
struct StackedWindow {
    QString name;
    QRect frame;
    bool isFullScreen = false;
    /// The drop target itself.
    bool isOwn = false;
};

/// The window under which the target with this frame lies hidden. `windows`: front to back.
/// `respondsToAllWindows`: any window above it counts, not only those that fill the screen.
[[nodiscard]] std::optional<StackedWindow> coveringWindow(const QList<StackedWindow>& windows,
                                                          const QRect& frame,
                                                          bool respondsToAllWindows);
/// Whether the target would stand in front of something that fills the screen.
[[nodiscard]] bool wouldCoverFullScreenWindow(const QList<StackedWindow>& windows,
                                              const QRect& frame);

}  // namespace desktop
