#include "failing_disk.h"

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>

namespace engine_test {
namespace {

std::atomic<int> failure = 0;
std::atomic<qint64> roomLeft = 0;
std::atomic<bool> fillsHoles = false;
std::atomic<bool> isUnlinkable = false;
/// 0: none.
std::atomic<int> renameFailure = 0;

ssize_t writeIntoRoom(const char* name, int file, const void* bytes, size_t count, off_t offset) {
    using Write = ssize_t (*)(int, const void*, size_t, off_t);
    const auto systemWrite = reinterpret_cast<Write>(dlsym(RTLD_NEXT, name));
    struct stat status {};
    if (fillsHoles && fstat(file, &status) == 0) {
        for (off_t end = status.st_size; end < offset; ++end)
            systemWrite(file, "", 1, end);
    }
    if (failure == 0)
        return systemWrite(file, bytes, count, offset);
    const qint64 room = std::min(roomLeft.load(), static_cast<qint64>(count));
    if (room == 0) {
        errno = failure;
        return -1;
    }
    roomLeft -= room;
    return systemWrite(file, bytes, static_cast<size_t>(room), offset);
}

/// 0: none.
std::atomic<dev_t> hangingDevice = 0;

void waitWhileHanging(int file) {
    struct stat status {};
    if (hangingDevice != 0 && fstat(file, &status) == 0) {
        for (dev_t device = hangingDevice; device == status.st_dev; device = hangingDevice)
            hangingDevice.wait(device);
    }
}

}  // namespace

HangingDisk::HangingDisk(const char* path) {
    struct stat status {};
    if (stat(path, &status) == 0)
        hangingDevice = status.st_dev;
}

HangingDisk::~HangingDisk() {
    hangingDevice = 0;
    hangingDevice.notify_all();
}

FailingDisk::FailingDisk(int errorNumber, qint64 room) {
    roomLeft = room;
    failure = errorNumber;
}

FailingDisk::~FailingDisk() {
    failure = 0;
}

HolelessDisk::HolelessDisk() {
    fillsHoles = true;
}

HolelessDisk::~HolelessDisk() {
    fillsHoles = false;
}

UnlinkableFiles::UnlinkableFiles() {
    isUnlinkable = true;
}

UnlinkableFiles::~UnlinkableFiles() {
    isUnlinkable = false;
}

FailingRenames::FailingRenames(int errorNumber) {
    renameFailure = errorNumber;
}

FailingRenames::~FailingRenames() {
    renameFailure = 0;
}

}  // namespace engine_test

// The executable's own definitions come before those of the C library.
extern "C" ssize_t pwrite(int file, const void* bytes, size_t count, off_t offset) {
    return engine_test::writeIntoRoom("pwrite", file, bytes, count, offset);
}
extern "C" ssize_t pwrite64(int file, const void* bytes, size_t count, off64_t offset) {
    return engine_test::writeIntoRoom("pwrite64", file, bytes, count, offset);
}
extern "C" int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                         unsigned flags) noexcept {
    if (engine_test::renameFailure != 0) {
        errno = engine_test::renameFailure;
        return -1;
    }
    using Rename = int (*)(int, const char*, int, const char*, unsigned);
    return reinterpret_cast<Rename>(dlsym(RTLD_NEXT, "renameat2"))(fromFolder, from, toFolder, to,
                                                                   flags);
}
extern "C" int fdatasync(int file) {
    engine_test::waitWhileHanging(file);
    using Sync = int (*)(int);
    return reinterpret_cast<Sync>(dlsym(RTLD_NEXT, "fdatasync"))(file);
}
extern "C" int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
    if (engine_test::isUnlinkable) {
        errno = ENOENT;
        return -1;
    }
    using Link = int (*)(int, const char*, int, const char*, int);
    return reinterpret_cast<Link>(dlsym(RTLD_NEXT, "linkat"))(fromFolder, from, toFolder, to,
                                                              flags);
}
