#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>

namespace platform {

/// Threads for work that may block. Made as they are needed and kept, for more work is near. Any
/// thread may call.
class ThreadPool {
public:
    explicit ThreadPool(std::size_t mostThreads);
    /// Does all that was started, unless `finish` has given up on it.
    ~ThreadPool();
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    /// Begun in the order of the calls; dropped after `finish`. `work` throws nothing.
    void start(std::function<void()> work);
    /// Returns when nothing waits or runs. Not from inside of work.
    void waitForDone();
    /// As `waitForDone`, but only while some work ends within `patience`. False: what still waits
    /// is dropped, and threads that do not come back are left to themselves; what they use must
    /// outlive them.
    [[nodiscard]] bool finish(std::chrono::milliseconds patience);

private:
    struct State;
    static void run(const std::shared_ptr<State>& state);

    std::shared_ptr<State> state_;
};

}  // namespace platform
