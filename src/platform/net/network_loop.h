#pragma once

#include <functional>
#include <memory>
#include <thread>

#include "platform/base/run_loop.h"

namespace platform {

class HTTPReadStream;

/// A run loop that also drives network transfers: it sleeps in libcurl's poll until a socket, a
/// posted call or a timer needs it. Never polls at an interval.
class NetworkLoop {
public:
    explicit NetworkLoop(Clock& clock);
    /// Closes what is open. On the thread that ran it, or when no thread runs it.
    ~NetworkLoop();
    NetworkLoop(const NetworkLoop&) = delete;
    NetworkLoop& operator=(const NetworkLoop&) = delete;

    /// Posted calls and timers of this loop.
    [[nodiscard]] RunLoop& calls();
    /// Runs turns on the calling thread until `done` answers true; it is asked after each turn. Not
    /// from inside a call or an event of this loop.
    void runUntil(const std::function<bool()>& done);
    /// Makes a running `runUntil` look again. Any thread.
    void wake();

    class Private;
    /// For the streams of this folder.
    [[nodiscard]] Private& internals() { return *private_; }

private:
    std::unique_ptr<Private> private_;
};

/// Calls `ready` in each turn of the loop in which `descriptor` can be read without waiting, has
/// ended or failed; it may end the watch. The descriptor stays its owner's and outlives the watch,
/// as the loop does. Loop's thread only.
class DescriptorWatch {
public:
    DescriptorWatch(NetworkLoop& loop, int descriptor, std::function<void()> ready);
    ~DescriptorWatch();
    DescriptorWatch(const DescriptorWatch&) = delete;
    DescriptorWatch& operator=(const DescriptorWatch&) = delete;

private:
    friend class NetworkLoop::Private;

    NetworkLoop& loop_;
    const int descriptor_;
    const std::function<void()> ready_;
};

/// A NetworkLoop with a thread of its own, which ends with the object.
class NetworkThread {
public:
    explicit NetworkThread(Clock& clock);
    /// Lets the calls already posted run, then stops and joins.
    ~NetworkThread();

    [[nodiscard]] NetworkLoop& loop() { return *loop_; }
    [[nodiscard]] bool isCurrent() const { return std::this_thread::get_id() == thread_.get_id(); }

private:
    std::unique_ptr<NetworkLoop> loop_;
    bool isOver_ = false;  ///< Of the thread itself.
    std::thread thread_;
};

}  // namespace platform
