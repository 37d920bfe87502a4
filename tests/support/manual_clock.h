#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <mutex>

#include "platform/base/clock.h"

namespace support {

/// A clock that stands still until a test moves it. Any thread.
class ManualClock final : public platform::Clock {
public:
    explicit ManualClock(platform::Seconds wall = 1'800'000'000.0) : wall_(wall) {}

    [[nodiscard]] platform::Seconds monotonic() const override;
    [[nodiscard]] platform::Seconds wall() const override;
    /// 0 if the deadline has passed, else negative: only `advance` ends the wait.
    [[nodiscard]] platform::Seconds sleepUntil(platform::Seconds deadline) const override;
    int addWaker(std::function<void()> wake) override;
    void removeWaker(int token) override;

    /// Moves both scales and wakes every loop.
    void advance(platform::Seconds seconds);
    /// Moves the date alone, as when a user sets it.
    void setWall(platform::Seconds wall);

private:
    void wakeAll();

    std::atomic<platform::Seconds> monotonic_ = 1000.0;
    std::atomic<platform::Seconds> wall_;
    std::mutex wakersLock_;  ///< Guards all that follows; held while the wakers run.
    int nextToken_ = 1;
    std::map<int, std::function<void()>> wakers_;
};

}  // namespace support
