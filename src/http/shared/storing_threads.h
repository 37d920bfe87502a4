#pragma once

#include <cstdint>
#include <map>
#include <mutex>

#include "platform/base/thread_pool.h"

namespace http {

/// Write the bodies of responses: one thread for each disk, for a disk that does not answer must
/// hold up no other, and two that write to the same one are slower than one. Any thread.
class StoringThreads {
public:
    /// Of a disk by its number, whoever gives it. Lives as long as this.
    [[nodiscard]] platform::ThreadPool& ofDisk(std::uint64_t disk);
    /// Returns when nothing is being stored any more.
    void waitForDone();

private:
    std::mutex lock_;  ///< Guards the map, not what is in it.
    std::map<std::uint64_t, platform::ThreadPool> pools_;
};

}  // namespace http
