#pragma once

#include <QString>
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
        /// The machine is about to go down, which is held back until this returns.
        std::function<void()> willShutDown;
        /// The date was set.
        std::function<void()> timeDidChange;
    };
    /// Empty: it is granted. Otherwise the request could not be sent, or the system refuses it for
    /// this reason, in its own words.
    using Answer = std::function<void(const QString& refusal)>;

    virtual ~Power() = default;

    /// Replaces the observers there were; empty ones end the watching.
    virtual void observe(Observers observers) = 0;

    /// While true, the machine does not fall asleep for want of a user. Saying it again costs
    /// nothing.
    virtual void setPreventsIdleSleep(bool prevents) = 0;

    /// The answer may take as long as a user needs to type a password, and never comes after the
    /// end of this object.
    virtual void requestSleep(Answer answer) = 0;
    virtual void requestShutDown(Answer answer) = 0;

    /// Whether there is a way out of this machine. Asks the system.
    [[nodiscard]] virtual bool hasNetwork() const = 0;
};

/// Runs in Qt's event loop of the thread that makes it. Where the system has no login manager
/// there is no news of sleep, and every request is refused; that is logged once.
[[nodiscard]] std::unique_ptr<Power> makePower();

}  // namespace platform
