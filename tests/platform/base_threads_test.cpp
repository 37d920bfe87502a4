#include "platform/base/run_loop.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <atomic>
#include <chrono>
#include <future>
#include <latch>
#include <set>
#include <thread>

#include "platform/base/thread_pool.h"
#include "platform/base/timer.h"
#include "support/main_loop.h"

namespace {

using platform::RunLoop;
using platform::ThreadPool;

struct RunLoopTest : testing::Test {
    support::MainLoop main;
    RunLoop& loop = main.loop;
    platform::Timers timers{loop};
    std::string seen;

    RunLoop::Call say(const char* word) {
        return [this, word] { seen += word; };
    }
};

TEST_F(RunLoopTest, RunsInOrderOfPostingAndOfDeadline) {
    timers.start(2, say("d"));
    timers.start(1, say("b"));
    timers.start(1, say("c"));
    loop.post(say("a"));
    main.advance(0.999);
    EXPECT_EQ(seen, "a");
    main.advance(0.001);
    EXPECT_EQ(seen, "abc");
    EXPECT_TRUE(timers.isActive());
    main.advance(1);
    EXPECT_EQ(seen, "abcd");
    EXPECT_FALSE(timers.isActive());
}

TEST_F(RunLoopTest, WhatATurnSchedulesWaitsForTheNext) {
    timers.start(0, [this] {
        seen += "1";
        timers.start(0, say("3"));
        loop.post(say("2"));
    });
    EXPECT_TRUE(loop.runDue());
    EXPECT_EQ(seen, "1");
    EXPECT_EQ(loop.nextDeadline(), main.clock.monotonic());
    EXPECT_TRUE(loop.runDue());
    EXPECT_EQ(seen, "123");
    EXPECT_FALSE(loop.runDue());
    EXPECT_EQ(loop.nextDeadline(), std::nullopt);
}

TEST_F(RunLoopTest, ACallMayCancelOthersOfItsOwnTurn) {
    platform::Timer other(loop);
    timers.start(0, [&] { other.cancel(); });
    other.start(0, say("b"));
    main.settle();
    EXPECT_EQ(seen, "");
}

TEST_F(RunLoopTest, ACancelledCallMayCancelOthersAsItDies) {
    platform::Timer cancelled(loop), other(loop);
    std::shared_ptr<void> held(nullptr, [&](void*) { other.cancel(); });
    cancelled.start(1, [keep = std::move(held)] {});
    other.start(1, say("b"));
    cancelled.cancel();
    EXPECT_EQ(loop.nextDeadline(), std::nullopt);
}

TEST_F(RunLoopTest, ATurnInsideATurnGoesOnWithTheRest) {
    loop.post([this] {
        seen += "(";
        loop.post(say("2"));
        loop.runDue();
        seen += ")";
    });
    loop.post(say("1"));
    EXPECT_TRUE(loop.runDue());
    EXPECT_EQ(seen, "(12)");
}

TEST(RunLoopWaker, WakesOnceForManyPostsAndOnlyForAnEarlierDeadline) {
    support::ManualClock clock;
    RunLoop loop(clock);
    int wakes = 0;
    loop.setWaker([&] { ++wakes; });
    for (int i = 0; i < 100; ++i)
        loop.post([] {});
    EXPECT_EQ(wakes, 1);
    loop.runDue();
    loop.post([] {});
    EXPECT_EQ(wakes, 2);
    platform::Timers timers(loop);
    timers.start(5, [] {});
    EXPECT_EQ(wakes, 3);
    timers.start(6, [] {});
    EXPECT_EQ(wakes, 3);
    loop.setWaker({});
}

TEST(RunLoopThreads, TakesPostsFromManyThreads) {
    support::MainLoop main;
    constexpr int threads = 4, posts = 2000;
    std::vector<int> last(threads, -1);
    int count = 0;
    std::vector<std::jthread> posters;
    for (int t = 0; t < threads; ++t) {
        posters.emplace_back([&, t] {
            for (int i = 0; i < posts; ++i) {
                main.loop.post([&, t, i] {
                    EXPECT_EQ(last[static_cast<std::size_t>(t)], i - 1);
                    last[static_cast<std::size_t>(t)] = i;
                    ++count;
                });
            }
        });
    }
    EXPECT_TRUE(main.waitUntil([&] { return count == threads * posts; }));
}

/// A Qt application for the tests that need its event loop.
struct QtLoop : testing::Test {
    int argumentCount = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
};

TEST_F(QtLoop, RunsDelayedAndPostedCallsFromOtherThreads) {
    platform::SystemClock clock;
    RunLoop loop(clock);
    bool posted = false;
    loop.post([&] { posted = true; });
    const platform::QtRunLoopDriver driver(loop);
    QEventLoop events;
    const platform::Seconds start = clock.monotonic();
    std::jthread poster;
    platform::Timer later(loop);
    later.start(0.02, [&] {
        EXPECT_GE(clock.monotonic(), start + 0.02);
        poster = std::jthread([&] { loop.post([&] { events.quit(); }); });
    });
    events.exec();
    EXPECT_TRUE(posted);
}

TEST_F(QtLoop, AModalEventLoopRunsWhatTheTurnLeft) {
    support::ManualClock clock;
    RunLoop loop(clock);
    const platform::QtRunLoopDriver driver(loop);
    QEventLoop outer, modal;
    platform::Timer close(loop);
    loop.post([&] {
        modal.exec();
        outer.quit();
    });
    loop.post([&] {
        close.start(5, [&] { modal.quit(); });
        clock.advance(5);
    });
    outer.exec();
    EXPECT_EQ(loop.nextDeadline(), std::nullopt);
}

TEST(ThreadPoolTest, WorksSideBySideUpToItsLimitAndKeepsTheOrder) {
    constexpr int limit = 3, count = 50;
    std::latch together(limit);
    std::mutex lock;
    std::vector<int> begun;
    std::set<std::thread::id> threads;
    ThreadPool pool(limit);
    for (int number = 0; number < count; ++number)
        pool.start([&, number] {
            {
                const std::lock_guard guard(lock);
                begun.push_back(number);
                threads.insert(std::this_thread::get_id());
            }
            // Passed only if as many as the limit run at once.
            if (number < limit)
                together.arrive_and_wait();
        });
    pool.waitForDone();
    EXPECT_EQ(begun.size(), std::size_t{count});
    EXPECT_EQ(threads.size(), std::size_t{limit});
    EXPECT_EQ(std::set<int>(begun.begin(), begun.begin() + limit), (std::set<int>{0, 1, 2}));
}

TEST(ThreadPoolTest, GivesUpOnWorkThatHangs) {
    std::promise<void> release;
    const auto ended = std::make_shared<std::promise<void>>();
    std::atomic<bool> hasRunLater = false;
    {
        ThreadPool pool(1);
        pool.start([released = release.get_future().share(), ended] {
            released.wait();
            ended->set_value();
        });
        pool.start([&] { hasRunLater = true; });
        EXPECT_FALSE(pool.finish(std::chrono::milliseconds(20)));
        pool.start([&] { hasRunLater = true; });
    }
    release.set_value();
    ended->get_future().wait();
    EXPECT_FALSE(hasRunLater);
    ThreadPool willing(1);
    willing.start([&] { hasRunLater = true; });
    EXPECT_TRUE(willing.finish(std::chrono::seconds(10)));
    EXPECT_TRUE(hasRunLater);
}

TEST(TimerTest, CallsOnceAndNeverWhenItIsGone) {
    support::ManualClock clock;
    platform::RunLoop loop(clock);
    int calls = 0;
    platform::Timer timer(loop);
    timer.start(1, [&] { calls += 100; });
    timer.start(2, [&] { ++calls; });
    timer.startUnlessActive(0, [&] { calls += 100; });
    clock.advance(3);
    loop.runDue();
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(timer.isActive());
    // It may go in its own call.
    auto another = std::make_unique<platform::Timer>(loop);
    another->start(0, [&] {
        another.reset();
        ++calls;
    });
    {
        platform::Timer gone(loop);
        gone.start(0, [&] { calls += 100; });
    }
    loop.runDue();
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(loop.nextDeadline(), std::nullopt);
}

TEST(TimersTest, CallEachOnceAndMayGoInACall) {
    support::ManualClock clock;
    platform::RunLoop loop(clock);
    std::string seen;
    auto timers = std::make_unique<platform::Timers>(loop);
    timers->start(2, [&] { seen += 'c'; });
    timers->start(1, [&] {
        seen += 'a';
        timers->start(0, [&] { seen += 'b'; });
    });
    for (int second = 0; second < 3; ++second) {
        EXPECT_TRUE(timers->isActive()) << second;
        clock.advance(1);
        loop.runDue();
        loop.runDue();
        if (second == 1) {
            timers->start(1, [&] { timers.reset(); });
            timers->start(1, [&] { seen += "gone"; });
        }
    }
    EXPECT_EQ(seen, "abc");
    EXPECT_EQ(timers, nullptr);
    EXPECT_EQ(loop.nextDeadline(), std::nullopt);
}

TEST(ThreadPoolTest, EndsWithAllWorkDoneAndItsCapturesGone) {
    std::atomic<int> done = 0;
    const auto captured = std::make_shared<int>(0);
    {
        ThreadPool pool(2);
        for (int number = 0; number < 20; ++number)
            pool.start([&done, captured] { ++done; });
    }
    EXPECT_EQ(done, 20);
    EXPECT_EQ(captured.use_count(), 1);
}

}  // namespace
