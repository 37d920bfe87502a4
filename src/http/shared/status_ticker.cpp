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
    : _loop(loop), _bandwidth(bandwidth) {}

StatusTicker::~StatusTicker() {
    _loop.cancelAll(this);
}

void StatusTicker::start(const void* owner, std::function<void()> tick) {
    _ticks[owner] = std::move(tick);
    if (_ticks.size() == 1)
        schedule();
}

void StatusTicker::stop(const void* owner) {
    _ticks.erase(owner);
    if (_ticks.empty())
        _loop.cancelAll(this);
}

void StatusTicker::schedule() {
    platform::Seconds delay = interval;
    if (_bandwidth.isBandwidthThrottled())
        if (const auto wakeUp = _bandwidth.throttleWakeUpTime()) {
            const platform::Seconds rest = *wakeUp - _loop.clock().monotonic();
            if (rest > 0)
                delay = std::min(delay, rest);
        }
    _loop.cancelAll(this);
    _loop.performAfter(this, tickOperation, delay, [this] { tickAll(); });
}

void StatusTicker::tickAll() {
    std::vector<const void*> owners;
    owners.reserve(_ticks.size());
    for (const auto& [owner, tick] : _ticks)
        owners.push_back(owner);
    for (const void* owner : owners) {
        const auto found = _ticks.find(owner);
        if (found == _ticks.end())
            continue;
        const std::function<void()> tick = found->second;
        tick();
    }
    if (!_ticks.empty())
        schedule();
}

}  // namespace http
