#pragma once

#include "platform/base/run_loop.h"

namespace platform {

/// One call to come on a run loop. It is dropped when this goes, so that it never finds its owner
/// gone. Thread of the loop, which it must not outlive.
class Timer {
public:
    explicit Timer(RunLoop& loop) : loop_(loop) {}
    ~Timer() { cancel(); }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    /// Calls after `delay` seconds (0: at the next turn), once. A call that was still to come is
    /// dropped. It may start the timer again, or destroy it.
    void start(Seconds delay, RunLoop::Call call);
    /// Does nothing if a call is still to come.
    void startUnlessActive(Seconds delay, RunLoop::Call call);
    void cancel();
    [[nodiscard]] bool isActive() const { return isActive_; }

private:
    RunLoop& loop_;
    bool isActive_ = false;
};

}  // namespace platform
