#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "platform/base/clock.h"

namespace platform {

/// One thread's list of things to do: calls posted from anywhere, and those that `Timer`s hold
/// until they are due.
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

    /// Runs what is posted and due at the time of the call; what these calls schedule with delay 0
    /// waits for the next turn. Answers whether anything ran. Loop's thread only.
    bool runDue();

    /// When the next call is due, on the clock's monotonic scale: a moment that has passed if calls
    /// are posted. Nothing: none waits. Loop's thread only.
    [[nodiscard]] std::optional<Seconds> nextDeadline() const;

    /// Called, from any thread, whenever the loop has something new to do: once for any number of
    /// calls posted between two turns. It must not call back into the loop. Set by the driver; an
    /// empty one takes it away, and then the old one is not running any more.
    void setWaker(std::function<void()> wake);

private:
    friend class Timer;

    /// When it is due, and the order of scheduling among equals.
    using Key = std::pair<Seconds, std::uint64_t>;

    /// Runs `call` after `delay` seconds unless it is cancelled before.
    Key performAfter(Seconds delay, Call call);
    void cancel(const Key& key);

    void wake() const;
    bool runPosted();
    bool runDelayed(const Key& end);

    Clock& clock_;
    std::map<Key, Call> delayed_;
    std::uint64_t sequence_ = 0;
    int runDepth_ = 0;
    /// Posted calls whose turn has come. A member, so that a turn inside a turn (a modal window
    /// opened by a call) goes on with the rest of them in order.
    std::deque<Call> turn_;
    mutable std::mutex postedLock_;  ///< Guards posted_.
    std::vector<Call> posted_;
    mutable std::mutex wakerLock_;  ///< Guards waker_; held while it runs.
    std::function<void()> waker_;
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
