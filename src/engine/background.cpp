#include "engine/background.h"

#include <QThreadPool>
#include <utility>

#include "platform/base/run_loop.h"

namespace engine {
namespace {

/// Not the global pool: a page that is slow to come must not hold up the end of a download.
QThreadPool& pool() {
    constexpr int mostThreads = 8;
    static QThreadPool threads;
    threads.setMaxThreadCount(mostThreads);
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
