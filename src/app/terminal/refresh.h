#pragma once

#include <functional>

#include "platform/base/timer.h"

namespace app::terminal {

/// Turns any number of requests to draw into few drawings: the first a moment after the request,
/// the others at least `interval` apart. Main thread.
class Refresh {
public:
    /// Ten times a second is as fast as figures can be read.
    static constexpr platform::Seconds interval = 0.1;
    /// Figures such as the time left change even when nothing is reported.
    static constexpr platform::Seconds idleInterval = 1.0;

    /// `draw` answers whether there is something on the screen that changes with time.
    Refresh(platform::RunLoop& loop, std::function<bool()> draw);

    void request();
    /// Nothing is drawn until the next request.
    void cancel();

private:
    void schedule(platform::Seconds delay);
    void drawNow();

    const platform::Clock& clock_;
    platform::Timer timer_;
    std::function<bool()> draw_;
    platform::Seconds lastDrawing_ = 0;
    bool isRequested_ = false;
};

}  // namespace app::terminal
