#include "platform/base/thread_pool.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace platform {

/// Shared with the threads, since one that hangs may outlive the pool.
struct ThreadPool::State {
    explicit State(std::size_t most) : mostThreads(most) {}

    [[nodiscard]] bool isIdle() const { return waiting.empty() && busy == 0; }

    const std::size_t mostThreads;
    std::mutex lock;  ///< Guards all below.
    std::condition_variable hasWork, isDone;
    std::deque<std::function<void()>> waiting;
    std::size_t idle = 0, busy = 0, ended = 0;
    bool isEnding = false;
    std::vector<std::thread> threads;
};

ThreadPool::ThreadPool(std::size_t mostThreads) : state_(std::make_shared<State>(mostThreads)) {}

ThreadPool::~ThreadPool() {
    std::vector<std::thread> threads;
    {
        const std::lock_guard guard(state_->lock);
        state_->isEnding = true;
        threads.swap(state_->threads);
    }
    state_->hasWork.notify_all();
    for (std::thread& thread : threads)
        thread.join();
}

void ThreadPool::start(std::function<void()> work) {
    {
        const std::lock_guard guard(state_->lock);
        if (state_->isEnding)
            return;
        state_->waiting.push_back(std::move(work));
        if (state_->waiting.size() > state_->idle && state_->threads.size() < state_->mostThreads) {
            state_->threads.emplace_back([state = state_] { run(state); });
            return;
        }
    }
    state_->hasWork.notify_one();
}

void ThreadPool::waitForDone() {
    std::unique_lock guard(state_->lock);
    state_->isDone.wait(guard, [this] { return state_->isIdle(); });
}

bool ThreadPool::finish(std::chrono::milliseconds patience) {
    std::deque<std::function<void()>> dropped;
    std::unique_lock guard(state_->lock);
    const auto isIdle = [this] { return state_->isIdle(); };
    bool isDone = false;
    for (std::size_t before = ~std::size_t{0}; !isDone && before != state_->ended;) {
        before = state_->ended;
        isDone = state_->isDone.wait_for(guard, patience, isIdle);
    }
    state_->isEnding = true;
    if (!isDone) {
        dropped.swap(state_->waiting);
        for (std::thread& thread : state_->threads)
            thread.detach();
        state_->threads.clear();
    }
    state_->hasWork.notify_all();
    guard.unlock();
    return isDone;
}

void ThreadPool::run(const std::shared_ptr<State>& state) {
    std::unique_lock guard(state->lock);
    for (;;) {
        ++state->idle;
        state->hasWork.wait(guard, [&] { return !state->waiting.empty() || state->isEnding; });
        --state->idle;
        if (state->waiting.empty())
            return;
        {
            const std::function<void()> work = std::exchange(state->waiting.front(), {});
            state->waiting.pop_front();
            ++state->busy;
            guard.unlock();
            work();
        }
        guard.lock();
        --state->busy;
        ++state->ended;
        if (state->isIdle())
            state->isDone.notify_all();
    }
}

}  // namespace platform
