#include "engine/background.h"

#include <utility>

#include "platform/base/run_loop.h"
#include "platform/base/thread_pool.h"

namespace engine {
namespace {

platform::ThreadPool& pool() {
    constexpr std::size_t mostThreads = 8;
    static platform::ThreadPool threads(mostThreads);
    return threads;
}

}  // namespace

void runInBackground(std::function<void()> work, std::function<void()> completion) {
    pool().start([&loop = platform::mainRunLoop(), work = std::move(work),
                  completion = std::move(completion)]() mutable {
        work();
        if (completion)
            loop.post(std::move(completion));
    });
}

void waitForBackgroundWork() {
    pool().waitForDone();
}

}  // namespace engine
