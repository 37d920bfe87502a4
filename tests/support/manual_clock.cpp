#include "support/manual_clock.h"

namespace support {

platform::Seconds ManualClock::monotonic() const {
    return monotonic_;
}

platform::Seconds ManualClock::wall() const {
    return wall_;
}

platform::Seconds ManualClock::sleepUntil(platform::Seconds deadline) const {
    return deadline <= monotonic_ ? 0 : -1;
}

int ManualClock::addWaker(std::function<void()> wake) {
    const std::lock_guard guard(wakersLock_);
    wakers_.emplace(nextToken_, std::move(wake));
    return nextToken_++;
}

void ManualClock::removeWaker(int token) {
    const std::lock_guard guard(wakersLock_);
    wakers_.erase(token);
}

void ManualClock::advance(platform::Seconds seconds) {
    monotonic_ += seconds;
    wall_ += seconds;
    wakeAll();
}

void ManualClock::setWall(platform::Seconds wall) {
    wall_ = wall;
    wakeAll();
}

void ManualClock::wakeAll() {
    const std::lock_guard guard(wakersLock_);
    for (const auto& [token, wake] : wakers_)
        wake();
}

}  // namespace support
