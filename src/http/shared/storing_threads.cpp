#include "http/shared/storing_threads.h"

namespace http {

platform::ThreadPool& StoringThreads::ofDisk(std::uint64_t disk) {
    const std::scoped_lock guard(_lock);
    return _pools.try_emplace(disk, std::size_t{1}).first->second;
}

void StoringThreads::waitForDone() {
    const std::scoped_lock guard(_lock);
    for (auto& [disk, pool] : _pools)
        pool.waitForDone();
}

}  // namespace http
