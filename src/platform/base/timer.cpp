#include "platform/base/timer.h"

#include <iterator>
#include <utility>

namespace platform {

void Timer::start(Seconds delay, RunLoop::Call call) {
    cancel();
    key_ = loop_.performAfter(delay, [this, call = std::move(call)] {
        key_.reset();
        call();
    });
}

void Timer::startUnlessActive(Seconds delay, RunLoop::Call call) {
    if (!isActive())
        start(delay, std::move(call));
}

void Timer::cancel() {
    if (const auto key = std::exchange(key_, std::nullopt))
        loop_.cancel(*key);
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
