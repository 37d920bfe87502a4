#pragma once

#include <QString>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>

#include "platform/base/thread_pool.h"

namespace platform {

class RunLoop;

/// The one who writes to a disk. Two lanes, so that a sync that takes long does not keep bytes from
/// being written: one thread writes them, since two that write to the same disk are slower than
/// one; a few others sync, join, move and delete. Any thread.
class Disk {
public:
    explicit Disk(RunLoop& loop);

    [[nodiscard]] ThreadPool& writes() { return writes_; }
    /// Runs `work` on one of the other threads, in the order of the calls as far as threads are
    /// free, and then `completion`, if there is one, on the loop.
    void run(std::function<void()> work, std::function<void()> completion = {});

    void waitForDone();
    /// See `Disks::finish`.
    [[nodiscard]] bool finish(std::chrono::milliseconds patience);

private:
    RunLoop& loop_;
    ThreadPool writes_;
    ThreadPool others_;
};

/// All disks that files of the program lie on, each with threads of its own: one that does not
/// answer holds up what lies on it and nothing else. Made by the composition root; `finish` is
/// called before the loop goes. Any thread.
class Disks {
public:
    explicit Disks(RunLoop& loop) : loop_(loop) {}
    /// Waits for everything, unless `finish` was called.
    ~Disks();
    Disks(const Disks&) = delete;
    Disks& operator=(const Disks&) = delete;

    /// The disk on which the file lies, or would be created. Lives as long as this.
    [[nodiscard]] Disk& holding(const QString& path);
    /// For looking at files of which it is not known whether their disk answers at all.
    [[nodiscard]] Disk& elsewhere() { return ofDevice(noDevice); }
    /// By the number that stat(2) gives.
    [[nodiscard]] Disk& ofDevice(std::uint64_t device);

    /// Returns when nothing is being done any more.
    void waitForDone();
    /// The same at the end of the program, but only while work ends within `patience`. False: a
    /// disk did not answer; its threads are left to themselves, and the process must end without
    /// waiting for them.
    [[nodiscard]] bool finish(std::chrono::milliseconds patience);

private:
    static constexpr std::uint64_t noDevice = ~std::uint64_t{0};

    RunLoop& loop_;
    std::mutex lock_;  ///< Guards the map, not what is in it.
    std::map<std::uint64_t, std::unique_ptr<Disk>> disks_;
};

}  // namespace platform
