#include "platform/base/run_loop.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>

namespace platform {

RunLoop::RunLoop(Clock& clock) : clock_(clock) {}

/// What is dropped may hold timers, whose end looks for them here.
RunLoop::~RunLoop() {
    const auto dropped = std::exchange(delayed_, {});
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

RunLoop::Key RunLoop::performAfter(Seconds delay, Call call) {
    const Key key{clock_.monotonic() + std::max(0.0, delay), sequence_++};
    const bool isNext = delayed_.empty() || key < delayed_.begin()->first;
    delayed_.emplace(key, std::move(call));
    // During a turn the driver asks for the next deadline afterwards anyway.
    if (isNext && runDepth_ == 0)
        wake();
    return key;
}

/// What the call holds is destroyed last, since its destructor may cancel calls too.
void RunLoop::cancel(const Key& key) {
    const auto dropped = delayed_.extract(key);
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
        const auto due = delayed_.extract(delayed_.begin());
        due.mapped()();
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
