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

    [[nodiscard]] platform::Seconds monotonic() const override { return monotonic_; }
    [[nodiscard]] platform::Seconds wall() const override { return wall_; }
    /// 0 if the deadline has passed, else negative: only `advance` ends the wait.
    [[nodiscard]] platform::Seconds sleepUntil(platform::Seconds deadline) const override {
        return deadline <= monotonic_ ? 0 : -1;
    }
    int addWaker(std::function<void()> wake) override {
        const std::lock_guard guard(wakersLock_);
        wakers_.emplace(nextToken_, std::move(wake));
        return nextToken_++;
    }
    void removeWaker(int token) override {
        const std::lock_guard guard(wakersLock_);
        wakers_.erase(token);
    }

    /// Moves both scales and wakes every loop.
    void advance(platform::Seconds seconds) {
        monotonic_ += seconds;
        setWall(wall_ + seconds);
    }
    /// Moves the date alone, as when a user sets it.
    void setWall(platform::Seconds wall) {
        wall_ = wall;
        const std::lock_guard guard(wakersLock_);
        for (const auto& [token, wake] : wakers_)
            wake();
    }

private:
    std::atomic<platform::Seconds> monotonic_ = 1000.0;
    std::atomic<platform::Seconds> wall_;
    std::mutex wakersLock_;  ///< Guards all that follows; held while the wakers run.
    int nextToken_ = 1;
    std::map<int, std::function<void()>> wakers_;
};

}  // namespace support
