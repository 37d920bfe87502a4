#include "support/main_loop.h"

#include <gtest/gtest.h>

namespace support {

MainLoop::MainLoop() : loop(clock) {
    loop.setWaker([this] {
        const std::lock_guard guard(lock_);
        awake_ = true;
        changed_.notify_all();
    });
    platform::installMainRunLoop(&loop);
}

MainLoop::~MainLoop() {
    platform::installMainRunLoop(nullptr);
    loop.setWaker({});
}

void MainLoop::settle() {
    constexpr int mostTurns = 1'000'000;
    for (int turn = 0; turn < mostTurns; ++turn) {
        if (!loop.runDue())
            return;
    }
    ADD_FAILURE() << "the main loop never comes to rest";
}

void MainLoop::advance(platform::Seconds seconds) {
    const platform::Seconds target = clock.monotonic() + seconds;
    settle();
    for (;;) {
        const auto deadline = loop.nextDeadline();
        if (!deadline || *deadline > target)
            break;
        if (*deadline > clock.monotonic())
            clock.advance(*deadline - clock.monotonic());
        settle();
    }
    if (target > clock.monotonic())
        clock.advance(target - clock.monotonic());
    settle();
}

bool MainLoop::waitUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
        settle();
        if (done())
            return true;
        if (std::chrono::steady_clock::now() >= end)
            return false;
        // What `done` looks at may change without a call being posted.
        constexpr std::chrono::milliseconds longestNap(10);
        std::unique_lock guard(lock_);
        changed_.wait_for(guard, longestNap, [this] { return awake_; });
        awake_ = false;
    }
}

}  // namespace support
