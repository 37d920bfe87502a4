#include "http/shared/status_ticker.h"

#include <algorithm>
#include <vector>

#include "http/shared/bandwidth_account.h"

namespace http {

StatusTicker::StatusTicker(platform::RunLoop& loop, const BandwidthAccount& bandwidth)
    : clock_(loop.clock()), timer_(loop), bandwidth_(bandwidth) {}

void StatusTicker::start(const void* owner, std::function<void()> tick) {
    ticks_[owner] = std::move(tick);
    if (ticks_.size() == 1)
        schedule();
}

void StatusTicker::stop(const void* owner) {
    ticks_.erase(owner);
    if (ticks_.empty())
        timer_.cancel();
}

void StatusTicker::schedule() {
    platform::Seconds delay = interval;
    if (bandwidth_.isBandwidthThrottled())
        if (const auto wakeUp = bandwidth_.throttleWakeUpTime()) {
            const platform::Seconds rest = *wakeUp - clock_.monotonic();
            if (rest > 0)
                delay = std::min(delay, rest);
        }
    timer_.start(delay, [this] { tickAll(); });
}

void StatusTicker::tickAll() {
    std::vector<const void*> owners;
    owners.reserve(ticks_.size());
    for (const auto& [owner, tick] : ticks_)
        owners.push_back(owner);
    for (const void* owner : owners) {
        const auto found = ticks_.find(owner);
        if (found == ticks_.end())
            continue;
        const std::function<void()> tick = found->second;
        tick();
    }
    if (!ticks_.empty())
        schedule();
}

}  // namespace http
