#include "platform/base/thread_pool.h"

#include <utility>

namespace platform {

ThreadPool::~ThreadPool() {
    {
        const std::lock_guard guard(lock_);
        isEnding_ = true;
    }
    hasWork_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
}

void ThreadPool::start(std::function<void()> work) {
    {
        const std::lock_guard guard(lock_);
        waiting_.push_back(std::move(work));
        if (waiting_.size() > idle_ && threads_.size() < mostThreads_) {
            threads_.emplace_back([this] { run(); });
            return;
        }
    }
    hasWork_.notify_one();
}

void ThreadPool::waitForDone() {
    std::unique_lock guard(lock_);
    isDone_.wait(guard, [this] { return waiting_.empty() && busy_ == 0; });
}

void ThreadPool::run() {
    std::unique_lock guard(lock_);
    for (;;) {
        ++idle_;
        hasWork_.wait(guard, [this] { return !waiting_.empty() || isEnding_; });
        --idle_;
        if (waiting_.empty())
            return;
        {
            const std::function<void()> work = std::exchange(waiting_.front(), {});
            waiting_.pop_front();
            ++busy_;
            guard.unlock();
            work();
        }
        guard.lock();
        --busy_;
        if (waiting_.empty() && busy_ == 0)
            isDone_.notify_all();
    }
}

}  // namespace platform
