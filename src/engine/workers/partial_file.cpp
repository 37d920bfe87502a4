#include "engine/workers/partial_file.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>

#include "engine/paths/part_journal.h"
#include "engine/workers/partial_file_marks.h"
#include "platform/files/descriptor.h"
#include "platform/files/disks.h"

namespace engine {
namespace {

constexpr qint64 syncInterval = qint64{32} << 20;
/// A fast transfer would otherwise make the file system write its journal thirty times a second.
constexpr platform::Seconds leastTimeBetweenSyncs = 1;
constexpr qint64 syncAtClosing = qint64{1} << 20;
/// As much as an extent of ext4 can have, which XFS can have too.
constexpr qint64 reservedAtOnce = qint64{128} << 20;
constexpr qint64 worthReserving = qint64{16} << 20;
/// Of the main thread for a disk, in steps, since the thread sanitizer knows no timed mutex.
constexpr std::chrono::milliseconds longestWait{1000};
constexpr std::chrono::milliseconds waitStep{1};

/// Of a regular file with one name. Nothing: errno says why.
std::optional<struct stat> plainFileStatus(const platform::Descriptor& file) {
    struct stat status {};
    if (fstat(file.get(), &status) != 0)
        return std::nullopt;
    // What has another name is somebody's file, too.
    if (!S_ISREG(status.st_mode) || status.st_nlink > 1) {
        errno = S_ISREG(status.st_mode) ? EMLINK : ENOTSUP;
        return std::nullopt;
    }
    return status;
}

/// Where it was measured to: 400 MiB in four parts are 4 extents in place of 13 to 26. Memory would
/// be filled with zeros for it, and some file systems would not compress what was reserved.
bool paysToReserve(const platform::Descriptor& file) {
    struct statfs fileSystem {};
    return fstatfs(file.get(), &fileSystem) == 0 &&
           (fileSystem.f_type == EXT4_SUPER_MAGIC || fileSystem.f_type == XFS_SUPER_MAGIC);
}

}  // namespace

PartialFile::~PartialFile() {
    close();
}

std::optional<platform::Error> PartialFile::open(const PartPlace& place, qint64 offset) {
    const QByteArray name = QFile::encodeName(place.file);
    constexpr int flags = O_WRONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;
    platform::Descriptor file(
        ::open(name.constData(), flags | O_CREAT | O_EXCL, platform::newFileMode));
    const bool isNew = file.isOpen();
    if (!isNew && errno == EEXIST)
        file = platform::openWithoutFollowing(name, flags);
    if (!file.isOpen())
        return platform::posixError(errno);
    const auto status = plainFileStatus(file);
    if (!status)
        return platform::posixError(errno);
    std::shared_ptr<const PartJournal> journal;
    if (place.isShared() && !(journal = PartJournal::open(place.journal, place.start)))
        return platform::posixError(errno);
    const bool isAsKnown = journal ? journal->received() >= offset &&
                                         status->st_size >= (offset > 0 ? place.start + offset : 0)
                                   : status->st_size == offset;
    if (!isAsKnown) {
        if (isNew)
            unlink(name.constData());
        // Somebody else has written to it, or it is another file by now.
        return platform::posixError(ESTALE);
    }
    if (journal)
        leaveToJournals(file.get());
    else if (isNew)
        markUnsynced(file.get());
    const std::scoped_lock guard(lock_);
    isClosing_ = false;
    file_ = std::move(file);
    journal_ = std::move(journal);
    start_ = place.start;
    disk_ = &disks_.ofDevice(status->st_dev);
    isReserving_ = paysToReserve(file_);
    reservedOffset_ = offset;
    offset_ = syncedOffset_ = flushedOffset_ = offset;
    syncedAt_ = clock_.monotonic();
    syncState_ = std::make_shared<SyncState>();
    return std::nullopt;
}

bool PartialFile::isOpen() const {
    const std::scoped_lock guard(lock_);
    return file_.isOpen();
}

bool PartialFile::setStoreLimit(qint64 length) {
    const std::unique_lock guard = lockSoon();
    if (!guard.owns_lock() || (length > 0 && offset_ > length))
        return false;
    storeLimit_ = length;
    return true;
}

std::optional<platform::Error> PartialFile::write(const QByteArray& data) {
    const std::scoped_lock guard(lock_);
    return append(data);
}

platform::ThreadPool& PartialFile::writesOfDisk() const {
    const std::scoped_lock guard(lock_);
    return disk_->writes();
}

bool PartialFile::store(const QByteArray& data) {
    const std::scoped_lock guard(lock_);
    const bool fits = storeLimit_ == 0 || data.size() <= storeLimit_ - offset_;
    const bool isStored = file_.isOpen() && fits && !append(data);
    if (isClosing_)
        closeFile();
    return isStored;
}

std::optional<platform::Error> PartialFile::append(const QByteArray& data) {
    reserve(offset_ + data.size());
    for (qsizetype done = 0; done < data.size();) {
        const ssize_t written =
            pwrite(file_.get(), data.constData() + done,
                   static_cast<std::size_t>(data.size() - done), inFile(offset_ + done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            const int reason = written < 0 ? errno : ENOSPC;
            if (journal_ && done > 0)
                static_cast<void>(journal_->setReceived(offset_ + done));
            return platform::posixError(reason);
        }
        done += written;
    }
    if (journal_ && !journal_->setReceived(offset_ + data.size()))
        return platform::posixError(errno);
    offset_ += data.size();
    keepDiskBusy();
    return std::nullopt;
}

/// Parts that grow side by side would each have the next piece of the disk in turn. Of a part whose
/// end is known, and never beyond that, so that a file takes no more room than it has bytes.
void PartialFile::reserve(qint64 end) {
    if (!isReserving_ || end <= reservedOffset_ || storeLimit_ == 0)
        return;
    const qint64 ahead = std::min(storeLimit_, offset_ + reservedAtOnce);
    if (ahead - offset_ >= worthReserving)
        static_cast<void>(
            fallocate(file_.get(), FALLOC_FL_KEEP_SIZE, inFile(offset_), ahead - offset_));
    reservedOffset_ = ahead;
}

void PartialFile::keepDiskBusy() {
    if (offset_ - syncedOffset_ >= syncInterval && !syncState_->isBusy) {
        if (clock_.monotonic() - syncedAt_ >= leastTimeBetweenSyncs)
            syncInBackground();
        else if (offset_ - flushedOffset_ >= syncInterval)
            flushInBackground();
    }
}

bool PartialFile::truncate(qint64 offset) {
    const std::scoped_lock guard(lock_);
    if (!file_.isOpen() || !cut(offset))
        return false;
    closeFile();
    return true;
}

/// A part with others behind it was kept from being longer, and stays as it is.
bool PartialFile::cut(qint64 offset) {
    if (journal_)
        return offset_ == offset;
    if (ftruncate(file_.get(), offset) != 0)
        return false;
    offset_ = offset;
    syncedOffset_ = std::min(syncedOffset_, offset);
    flushedOffset_ = std::min(flushedOffset_, offset);
    ++syncState_->cuts;
    markSynced(file_.get(), 0);
    return true;
}

/// Not owned: the disk keeps a write for too long.
std::unique_lock<std::mutex> PartialFile::lockSoon() {
    std::unique_lock guard(lock_, std::try_to_lock);
    for (auto left = longestWait; !guard.owns_lock() && left > left.zero(); left -= waitStep) {
        std::this_thread::sleep_for(waitStep);
        static_cast<void>(guard.try_lock());
    }
    return guard;
}

void PartialFile::close() {
    isClosing_ = true;
    if (const auto guard = lockSoon(); guard.owns_lock())
        closeFile();
}

void PartialFile::closeFile() {
    if (file_.isOpen() && offset_ - syncedOffset_ > syncAtClosing)
        syncInBackground();
    file_.close();
    journal_.reset();
}

/// Sets the disk to work without waiting for it, so that little is left for the next sync.
void PartialFile::flushInBackground() {
    auto file = std::make_shared<platform::Descriptor>(fcntl(file_.get(), F_DUPFD_CLOEXEC, 0));
    syncState_->isBusy = true;
    disk_->run([file, start = inFile(flushedOffset_), end = inFile(offset_), state = syncState_] {
        sync_file_range(file->get(), start, end - start, SYNC_FILE_RANGE_WRITE);
        state->isBusy = false;
    });
    flushedOffset_ = offset_;
}

/// Not on the thread that writes, which a busy disk would hold up for seconds.
void PartialFile::syncInBackground() {
    auto file = std::make_shared<platform::Descriptor>(fcntl(file_.get(), F_DUPFD_CLOEXEC, 0));
    syncedOffset_ = flushedOffset_ = offset_;
    syncedAt_ = clock_.monotonic();
    syncState_->isBusy = true;
    disk_->run([file, journal = journal_, offset = offset_, state = syncState_,
                cuts = syncState_->cuts.load()] {
        const bool isSynced = fdatasync(file->get()) == 0 && state->cuts == cuts;
        if (isSynced && journal)
            journal->setSynced(offset);
        else if (isSynced)
            markSynced(file->get(), offset);
        state->isBusy = false;
    });
}

}  // namespace engine
