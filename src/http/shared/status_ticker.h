#pragma once

#include <functional>
#include <map>

#include "platform/base/clock.h"

namespace platform {
class RunLoop;
}

namespace http {

class BandwidthAccount;

/// The status timers of all requests on one loop: a tick each quarter of a second for whoever has
/// asked, and an early one when the bandwidth limit lets go. One timer serves them all, and none
/// runs while nobody asks.
///
/// The loop's thread only.
class StatusTicker {
public:
    StatusTicker(platform::RunLoop& loop, const BandwidthAccount& bandwidth);
    ~StatusTicker();
    StatusTicker(const StatusTicker&) = delete;
    StatusTicker& operator=(const StatusTicker&) = delete;

    static constexpr platform::Seconds interval = 0.25;

    /// `tick` may add and remove owners, itself included.
    void start(const void* owner, std::function<void()> tick);
    void stop(const void* owner);

private:
    void schedule();
    void tickAll();

    platform::RunLoop& loop_;
    const BandwidthAccount& bandwidth_;
    std::map<const void*, std::function<void()>> ticks_;
};

}  // namespace http
