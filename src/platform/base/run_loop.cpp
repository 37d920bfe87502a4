#include "platform/base/run_loop.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>

namespace platform {

RunLoop::RunLoop(Clock& clock) : clock_(clock) {}

/// What is dropped may hold timers, whose end looks for them here.
RunLoop::~RunLoop() {
    const auto dropped = std::exchange(delayed_, {});
    keysByOwner_.clear();
}

void RunLoop::post(Call call) {
    bool first = false;
    {
        const std::lock_guard guard(postedLock_);
        first = posted_.empty();
        posted_.push_back(std::move(call));
    }
    if (first)
        wake();
}

void RunLoop::performAfter(const void* owner, std::string_view operation, Seconds delay,
                           Call call) {
    const Key key{clock_.monotonic() + std::max(0.0, delay), sequence_++};
    const bool isNext = delayed_.empty() || key < delayed_.begin()->first;
    delayed_.emplace(key, Delayed{owner, std::string(operation), std::move(call)});
    keysByOwner_.emplace(owner, key);
    // During a turn the driver asks for the next deadline afterwards anyway.
    if (isNext && runDepth_ == 0)
        wake();
}

RunLoop::DelayedCalls::node_type RunLoop::takeDelayed(DelayedCalls::iterator call) {
    auto [key, end] = keysByOwner_.equal_range(call->second.owner);
    while (key != end && key->second != call->first)
        ++key;
    keysByOwner_.erase(key);
    return delayed_.extract(call);
}

/// What a call holds is destroyed last, since its destructor may cancel calls too.
template <typename Wanted>
void RunLoop::dropDelayed(const void* owner, Wanted wanted) {
    std::vector<DelayedCalls::node_type> dropped;
    auto [key, end] = keysByOwner_.equal_range(owner);
    while (key != end) {
        const auto call = delayed_.find(key->second);
        if (wanted(call->second)) {
            dropped.push_back(delayed_.extract(call));
            key = keysByOwner_.erase(key);
        } else {
            ++key;
        }
    }
}

void RunLoop::cancel(const void* owner, std::string_view operation) {
    dropDelayed(owner, [&](const Delayed& call) { return call.operation == operation; });
}

void RunLoop::cancelAll(const void* owner) {
    dropDelayed(owner, [](const Delayed&) { return true; });
}

bool RunLoop::isScheduled(const void* owner, std::string_view operation) const {
    const auto [begin, end] = keysByOwner_.equal_range(owner);
    return std::any_of(begin, end, [&](const auto& entry) {
        return delayed_.at(entry.second).operation == operation;
    });
}

bool RunLoop::runDue() {
    const Key end{clock_.monotonic(), sequence_};
    {
        const std::lock_guard guard(postedLock_);
        std::move(posted_.begin(), posted_.end(), std::back_inserter(turn_));
        posted_.clear();
    }
    ++runDepth_;
    const bool ranPosted = runPosted();
    const bool ranDelayed = runDelayed(end);
    --runDepth_;
    return ranPosted || ranDelayed;
}

bool RunLoop::runPosted() {
    const bool any = !turn_.empty();
    while (!turn_.empty()) {
        const Call call = std::move(turn_.front());
        turn_.pop_front();
        call();
    }
    return any;
}

/// What is scheduled during the turn sorts behind `end`, even when the clock stands still.
bool RunLoop::runDelayed(const Key& end) {
    bool any = false;
    while (!delayed_.empty() && delayed_.begin()->first < end) {
        const auto due = takeDelayed(delayed_.begin());
        due.mapped().call();
        any = true;
    }
    return any;
}

std::optional<Seconds> RunLoop::nextDeadline() const {
    if (!turn_.empty())
        return clock_.monotonic();
    {
        const std::lock_guard guard(postedLock_);
        if (!posted_.empty())
            return clock_.monotonic();
    }
    if (delayed_.empty())
        return std::nullopt;
    return delayed_.begin()->first.first;
}

void RunLoop::setWaker(std::function<void()> wake) {
    const std::lock_guard guard(wakerLock_);
    waker_ = std::move(wake);
}

void RunLoop::wake() const {
    const std::lock_guard guard(wakerLock_);
    if (waker_)
        waker_();
}

namespace {

std::atomic<RunLoop*>& installedMainRunLoop() {
    static std::atomic<RunLoop*> loop = nullptr;
    return loop;
}

}  // namespace

RunLoop& mainRunLoop() {
    RunLoop* const loop = installedMainRunLoop();
    if (loop == nullptr)
        std::abort();  // A program without a main loop is wired wrongly.
    return *loop;
}

void installMainRunLoop(RunLoop* loop) {
    installedMainRunLoop() = loop;
}

bool hasMainRunLoop() {
    return installedMainRunLoop() != nullptr;
}

}  // namespace platform
