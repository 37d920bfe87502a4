#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

#include "platform/base/run_loop.h"
#include "support/manual_clock.h"

namespace support {

/// The main run loop of a test, on a manual clock: installed as `platform::mainRunLoop` for its
/// life.
class MainLoop {
public:
    MainLoop();
    ~MainLoop();

    ManualClock clock;
    platform::RunLoop loop;

    /// Runs what is due, and what that makes due, until nothing is.
    void settle();
    /// Moves the clock in steps that stop at each deadline of this loop, settling at each.
    void advance(platform::Seconds seconds);
    /// Runs posted calls as they arrive from other threads, without moving the clock, until `done`.
    /// False: real time ran out first.
    [[nodiscard]] bool waitUntil(const std::function<bool()>& done,
                                 std::chrono::milliseconds limit = std::chrono::seconds(20));

private:
    std::mutex lock_;  ///< Guards awake_.
    std::condition_variable changed_;
    bool awake_ = false;
};

}  // namespace support
