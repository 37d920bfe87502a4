#include "platform/files/disks.h"

#include <sys/stat.h>
#include <QFile>

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/base/run_loop.h"

namespace platform {
namespace {

/// Several small files that are synced side by side share one write of the journal.
constexpr std::size_t mostOtherThreads = 8;

/// Of the path, or of the nearest folder above it that exists.
std::uint64_t deviceOf(const QString& path) {
    QByteArray name = QFile::encodeName(path);
    struct stat status {};
    while (::stat(name.constData(), &status) != 0) {
        const qsizetype slash = name.lastIndexOf('/');
        if (slash <= 0)
            return ::stat("/", &status) == 0 ? status.st_dev : 0;
        name.truncate(slash);
    }
    return status.st_dev;
}

/// Its threads may still come back and look for it.
void keepForever(std::unique_ptr<Disk> disk) {
    static std::vector<std::unique_ptr<Disk>> given;
    given.push_back(std::move(disk));
}

}  // namespace

Disk::Disk(RunLoop& loop) : loop_(loop), writes_(1), others_(mostOtherThreads) {}

void Disk::run(std::function<void()> work, std::function<void()> completion) {
    others_.start(
        [&loop = loop_, work = std::move(work), completion = std::move(completion)]() mutable {
            work();
            // What it holds may belong to the loop's thread.
            work = nullptr;
            if (completion)
                loop.post(std::move(completion));
        });
}

void Disk::waitForDone() {
    writes_.waitForDone();
    others_.waitForDone();
}

bool Disk::finish(std::chrono::milliseconds patience) {
    // The first to end, since what it does may give work to the others.
    const bool haveWritten = writes_.finish(patience);
    return others_.finish(patience) && haveWritten;
}

Disks::~Disks() {
    waitForDone();
}

Disk& Disks::holding(const QString& path) {
    return ofDevice(deviceOf(path));
}

Disk& Disks::ofDevice(std::uint64_t device) {
    const std::scoped_lock guard(lock_);
    std::unique_ptr<Disk>& disk = disks_[device];
    if (!disk)
        disk = std::make_unique<Disk>(loop_);
    return *disk;
}

void Disks::waitForDone() {
    std::vector<Disk*> all;
    {
        const std::scoped_lock guard(lock_);
        for (const auto& [device, disk] : disks_)
            all.push_back(disk.get());
    }
    for (Disk* disk : all)
        disk->waitForDone();
}

bool Disks::finish(std::chrono::milliseconds patience) {
    const std::scoped_lock guard(lock_);
    bool isDone = true;
    for (auto disk = disks_.begin(); disk != disks_.end();) {
        const bool hasAnswered = disk->second->finish(patience);
        if (!hasAnswered)
            keepForever(std::move(disk->second));
        isDone = isDone && hasAnswered;
        disk = hasAnswered ? std::next(disk) : disks_.erase(disk);
    }
    return isDone;
}

}  // namespace platform
