#pragma once

#include <functional>

#include "platform/base/timer.h"

namespace engine {
class QueueAdmission;
}

namespace app {

/// Has the rows of downloads that wait for a server drawn anew each second, while there are some.
/// Main thread.
class WaitTicker {
public:
    WaitTicker(platform::RunLoop& loop, engine::QueueAdmission& admission,
               std::function<void()> redraw);

    /// A server has just had no place for a download.
    void start();

private:
    void tick();

    engine::QueueAdmission& admission_;
    std::function<void()> redraw_;
    platform::Timer timer_;
};

}  // namespace app
