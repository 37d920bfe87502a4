#include "http/shared/storing_threads.h"

namespace http {

platform::ThreadPool& StoringThreads::ofDisk(std::uint64_t disk) {
    const std::scoped_lock guard(lock_);
    return pools_.try_emplace(disk, std::size_t{1}).first->second;
}

void StoringThreads::waitForDone() {
    const std::scoped_lock guard(lock_);
    for (auto& [disk, pool] : pools_)
        pool.waitForDone();
}

}  // namespace http
