#include "platform/session/clock_watcher.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <cerrno>
#include <cstdint>

namespace platform {

ClockWatcher::ClockWatcher(std::function<void()> changed)
    : changed_(std::move(changed)),
      timer_(::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (timer_ < 0) {
        return;
    }
    arm();
    notifier_ = std::make_unique<QSocketNotifier>(timer_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { wasCancelled(); });
}

ClockWatcher::~ClockWatcher() {
    notifier_.reset();
    if (timer_ >= 0) {
        ::close(timer_);
    }
}

void ClockWatcher::arm() {
    // Later than any clock is set to, and not beyond what the kernel counts.
    constexpr auto theYear2242 = std::int64_t{1} << 33;
    itimerspec never{};
    never.it_value.tv_sec = theYear2242;
    ::timerfd_settime(timer_, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr);
}

void ClockWatcher::wasCancelled() {
    std::uint64_t expirations = 0;
    const bool isSet = ::read(timer_, &expirations, sizeof expirations) < 0 && errno == ECANCELED;
    arm();
    if (isSet) {
        changed_();
    }
}

}  // namespace platform
