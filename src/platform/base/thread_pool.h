#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace platform {

/// Threads for work that may block. Made as they are needed and kept, for more work is near. Any
/// thread may call.
class ThreadPool {
public:
    explicit ThreadPool(std::size_t mostThreads) : mostThreads_(mostThreads) {}
    /// Does all that was started.
    ~ThreadPool();
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    /// Begun in the order of the calls. `work` throws nothing.
    void start(std::function<void()> work);
    /// Returns when nothing waits or runs. Not from inside of work.
    void waitForDone();

private:
    void run();

    const std::size_t mostThreads_;
    std::mutex lock_;  ///< Guards all below.
    std::condition_variable hasWork_, isDone_;
    std::deque<std::function<void()>> waiting_;
    std::size_t idle_ = 0, busy_ = 0;
    bool isEnding_ = false;
    std::vector<std::thread> threads_;
};

}  // namespace platform
