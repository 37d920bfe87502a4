#include "platform/base/timer.h"

#include <iterator>
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

void Timers::start(Seconds delay, RunLoop::Call call) {
    pending_.emplace_back(loop_);
    const auto timer = std::prev(pending_.end());
    timer->start(delay, [this, timer, call = std::move(call)] {
        pending_.erase(timer);
        call();
    });
}

}  // namespace platform
