#pragma once

#include <list>
#include <optional>

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
    [[nodiscard]] bool isActive() const { return key_.has_value(); }

private:
    RunLoop& loop_;
    std::optional<RunLoop::Key> key_;  ///< Of the call that is to come.
};

/// Any number of calls to come on a run loop, each once. All are dropped when this goes. Thread of
/// the loop, which it must not outlive.
class Timers {
public:
    explicit Timers(RunLoop& loop) : loop_(loop) {}
    Timers(const Timers&) = delete;
    Timers& operator=(const Timers&) = delete;

    /// One more call, after `delay` seconds (0: at the next turn). It may start others, or destroy
    /// all of them.
    void start(Seconds delay, RunLoop::Call call);
    /// Whether a call is still to come.
    [[nodiscard]] bool isActive() const { return !pending_.empty(); }

private:
    RunLoop& loop_;
    std::list<Timer> pending_;
};

}  // namespace platform
