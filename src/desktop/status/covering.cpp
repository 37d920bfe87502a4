#include "desktop/status/covering.h"

#include <algorithm>

namespace desktop {

std::optional<StackedWindow> coveringWindow(const QList<StackedWindow>& windows, const QRect& frame,
                                            bool respondsToAllWindows) {
    for (const StackedWindow& window : windows) {
        if (window.isOwn) {
            return {};
        }
        // What rounding leaves uncovered does not count.
        const bool contains = window.frame.adjusted(-1, -1, 1, 1).contains(frame);
        if (contains && (respondsToAllWindows || window.isFullScreen)) {
            return window;
        }
    }
    return {};
}

bool wouldCoverFullScreenWindow(const QList<StackedWindow>& windows, const QRect& frame) {
    return std::any_of(windows.begin(), windows.end(), [&](const StackedWindow& window) {
        return !window.isOwn && window.isFullScreen && window.frame.intersects(frame);
    });
}

}  // namespace desktop
