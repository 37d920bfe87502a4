#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/clock.h"

namespace platform {

/// One thread's list of things to do: calls posted from anywhere and calls due at a time.
///
/// It does not wait by itself. A driver (Qt's event loop, the network loop, a test) calls
/// `runDue` when woken or when `nextDeadline` has come.
class RunLoop {
public:
    using Call = std::function<void()>;

    explicit RunLoop(Clock& clock);
    ~RunLoop();
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;

    [[nodiscard]] Clock& clock() const { return clock_; }

    /// Runs `call` on the loop's thread at its next turn, in the order of posting. Any thread.
    void post(Call call);

    /// Runs `call` after `delay` seconds (0: at the next turn). Loop's thread only. `owner` and
    /// `operation` are only names for `cancel`; the same pair may be scheduled several times.
    void performAfter(const void* owner, std::string_view operation, Seconds delay, Call call);

    /// Drops what `performAfter` holds for this pair, or for all operations of an owner. Loop's
    /// thread only. An owner must cancel its calls before it dies.
    void cancel(const void* owner, std::string_view operation);
    void cancelAll(const void* owner);
    [[nodiscard]] bool isScheduled(const void* owner, std::string_view operation) const;

    /// Runs what is posted and due at the time of the call; what these calls schedule with delay 0
    /// waits for the next turn. Answers whether anything ran. Loop's thread only.
    bool runDue();

    /// When the next delayed call is due, on the clock's monotonic scale. Nothing: none waits.
    /// Posted calls are due at once.
    [[nodiscard]] std::optional<Seconds> nextDeadline() const;

    /// Called, from any thread, whenever the loop has something new to do. Set once, by the driver.
    void setWaker(std::function<void()> wake);

private:
    struct Delayed {
        const void* owner;
        std::string operation;
        Call call;
    };
    using Key = std::pair<Seconds, std::uint64_t>;

    void wake() const;

    Clock& clock_;
    std::function<void()> waker_;
    std::map<Key, Delayed> delayed_;
    std::uint64_t sequence_ = 0;
    mutable std::mutex postedLock_;  ///< Guards posted_.
    std::vector<Call> posted_;
};

/// Runs a RunLoop inside Qt's event loop of the thread that makes it.
class QtRunLoopDriver {
public:
    explicit QtRunLoopDriver(RunLoop& loop);
    ~QtRunLoopDriver();

private:
    class Private;
    std::unique_ptr<Private> private_;
};

/// The loop of the main thread, as installed by the composition root or by a test; there is none
/// before that.
[[nodiscard]] RunLoop& mainRunLoop();
/// Nullptr takes it away again.
void installMainRunLoop(RunLoop* loop);
[[nodiscard]] bool hasMainRunLoop();

}  // namespace platform
