#include "platform/base/timer.h"

#include <utility>

namespace platform {
namespace {

constexpr std::string_view operation = "timer";

}  // namespace

void Timer::start(Seconds delay, RunLoop::Call call) {
    cancel();
    isActive_ = true;
    loop_.performAfter(this, operation, delay, [this, call = std::move(call)] {
        isActive_ = false;
        call();
    });
}

void Timer::startUnlessActive(Seconds delay, RunLoop::Call call) {
    if (!isActive_)
        start(delay, std::move(call));
}

void Timer::cancel() {
    if (std::exchange(isActive_, false))
        loop_.cancel(this, operation);
}

}  // namespace platform
