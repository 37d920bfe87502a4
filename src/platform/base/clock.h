#pragma once

#include <functional>

namespace platform {

/// Times and spans, in seconds.
using Seconds = double;

/// The source of time of a whole program. Everything that waits or measures asks a clock, so that
/// a test can hold time in its hand.
///
/// All operations may be called from any thread.
class Clock {
public:
    virtual ~Clock() = default;

    /// Seconds since some fixed moment; never goes back, does not jump when the date is set.
    [[nodiscard]] virtual Seconds monotonic() const = 0;

    /// Seconds since 1970-01-01 00:00:00 UTC.
    [[nodiscard]] virtual Seconds wall() const = 0;

    /// How long a thread may really sleep to wait for `deadline` (on the monotonic scale): 0 if it
    /// has passed, negative to sleep until woken.
    [[nodiscard]] virtual Seconds sleepUntil(Seconds deadline) const = 0;

    /// Calls `wake` whenever time jumps ahead, from the thread that moves it. Answers a token for
    /// `removeWaker`; a clock that runs by itself never calls it.
    virtual int addWaker(std::function<void()> wake) = 0;
    /// After the return, the waker is not running and never runs again.
    virtual void removeWaker(int token) = 0;
};

/// The machine's own clocks (CLOCK_MONOTONIC, CLOCK_REALTIME).
class SystemClock final : public Clock {
public:
    [[nodiscard]] Seconds monotonic() const override;
    [[nodiscard]] Seconds wall() const override;
    [[nodiscard]] Seconds sleepUntil(Seconds deadline) const override;
    int addWaker(std::function<void()> wake) override;
    void removeWaker(int token) override;
};

}  // namespace platform
