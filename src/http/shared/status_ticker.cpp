#include "http/shared/status_ticker.h"

#include <algorithm>
#include <vector>

#include "http/shared/bandwidth_account.h"
#include "platform/base/run_loop.h"

namespace http {

namespace {

constexpr const char* tickOperation = "updateStatus";

}  // namespace

StatusTicker::StatusTicker(platform::RunLoop& loop, const BandwidthAccount& bandwidth)
    : loop_(loop), bandwidth_(bandwidth) {}

StatusTicker::~StatusTicker() {
    loop_.cancelAll(this);
}

void StatusTicker::start(const void* owner, std::function<void()> tick) {
    ticks_[owner] = std::move(tick);
    if (ticks_.size() == 1)
        schedule();
}

void StatusTicker::stop(const void* owner) {
    ticks_.erase(owner);
    if (ticks_.empty())
        loop_.cancelAll(this);
}

void StatusTicker::schedule() {
    platform::Seconds delay = interval;
    if (bandwidth_.isBandwidthThrottled())
        if (const auto wakeUp = bandwidth_.throttleWakeUpTime()) {
            const platform::Seconds rest = *wakeUp - loop_.clock().monotonic();
            if (rest > 0)
                delay = std::min(delay, rest);
        }
    loop_.cancelAll(this);
    loop_.performAfter(this, tickOperation, delay, [this] { tickAll(); });
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
