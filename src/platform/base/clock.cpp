#include "platform/base/clock.h"

#include <time.h>

#include <algorithm>

namespace platform {

namespace {

Seconds read(clockid_t id) {
    timespec now{};
    clock_gettime(id, &now);
    return static_cast<Seconds>(now.tv_sec) + static_cast<Seconds>(now.tv_nsec) * 1e-9;
}

}  // namespace

Seconds SystemClock::monotonic() const {
    return read(CLOCK_MONOTONIC);
}

Seconds SystemClock::wall() const {
    return read(CLOCK_REALTIME);
}

Seconds SystemClock::sleepUntil(Seconds deadline) const {
    return std::max(0.0, deadline - monotonic());
}

int SystemClock::addWaker(std::function<void()>) {
    return 0;
}

void SystemClock::removeWaker(int) {}

}  // namespace platform
