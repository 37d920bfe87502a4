#pragma once

#include <functional>
#include <memory>

namespace platform {

/// The machine's sleep, its clock being set, and the requests to sleep and to shut down (on Linux
/// those of org.freedesktop.login1). Main thread.
class Power {
public:
    struct Observers {
        /// Sleep is held back until this returns.
        std::function<void()> willSleep;
        std::function<void()> didWake;
        /// The date was set.
        std::function<void()> timeDidChange;
    };

    virtual ~Power() = default;

    /// Replaces the observers there were; empty ones end the watching.
    virtual void observe(Observers observers) = 0;

    /// False: the request could not be sent, or the system refuses it.
    virtual bool requestSleep() = 0;
    virtual bool requestShutDown() = 0;
};

/// Runs in Qt's event loop of the thread that makes it. Where the system has no login manager
/// there is no news of sleep, and every request is refused.
[[nodiscard]] std::unique_ptr<Power> makePower();

}  // namespace platform
