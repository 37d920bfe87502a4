#pragma once

#include <QtGlobal>
#include <optional>

#include "platform/base/clock.h"

namespace app {

/// What the application's icon shows beside itself.
struct ApplicationImage {
    enum class Overlay { None, SleepWhenDone, ShutDownWhenDone };

    /// On the badges at the top and at the bottom; 0: no badge.
    qint64 upperCount = 0, lowerCount = 0;
    Overlay overlay = Overlay::None;
    /// 0 to 1. Negative: no progress is shown.
    double fraction = -1.0;

    /// Nothing but the plain icon.
    [[nodiscard]] bool isPlain() const {
        return overlay == Overlay::None && upperCount <= 0 && lowerCount <= 0;
    }
};

/// Decides which of many changes are worth drawing: the icon is asked for at every report of
/// progress and is slow to draw.
class ApplicationImageGate {
public:
    explicit ApplicationImageGate(const platform::Clock& clock) : clock_(clock) {}

    /// Whether the icon is to be drawn now; then this is what the next ones are compared with.
    [[nodiscard]] bool admits(const ApplicationImage& image, bool force);

private:
    [[nodiscard]] bool isWorthwhile(const ApplicationImage& image) const;

    const platform::Clock& clock_;
    ApplicationImage last_;
    std::optional<platform::Seconds> lastUpdate_;
};

}  // namespace app
