#include "platform/base/thread_pool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <set>

namespace {

using platform::ThreadPool;

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
