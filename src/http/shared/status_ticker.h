#pragma once

#include <functional>
#include <map>

#include "platform/base/timer.h"

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

    static constexpr platform::Seconds interval = 0.25;

    /// `tick` may add and remove owners, itself included.
    void start(const void* owner, std::function<void()> tick);
    void stop(const void* owner);

private:
    void schedule();
    void tickAll();

    const platform::Clock& clock_;
    platform::Timer timer_;
    const BandwidthAccount& bandwidth_;
    std::map<const void*, std::function<void()>> ticks_;
};

}  // namespace http
