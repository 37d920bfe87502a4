#include "platform/base/clock.h"

#include <time.h>

#include <algorithm>

namespace platform {

namespace {

Seconds now(clockid_t id) {
    timespec time{};
    clock_gettime(id, &time);
    return static_cast<Seconds>(time.tv_sec) + static_cast<Seconds>(time.tv_nsec) * 1e-9;
}

}  // namespace

Seconds SystemClock::monotonic() const {
    return now(CLOCK_MONOTONIC);
}

Seconds SystemClock::wall() const {
    return now(CLOCK_REALTIME);
}

Seconds SystemClock::sleepUntil(Seconds deadline) const {
    return std::max(0.0, deadline - monotonic());
}

int SystemClock::addWaker(std::function<void()>) {
    return 0;
}

void SystemClock::removeWaker(int) {}

}  // namespace platform
