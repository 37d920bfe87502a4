#pragma once

#include <QByteArray>
#include <QString>
#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

#include "engine/paths/part_layout.h"
#include "http/http_body_store.h"
#include "platform/base/clock.h"
#include "platform/base/error.h"
#include "platform/files/descriptor.h"

namespace platform {
class Disk;
class Disks;
}  // namespace platform

namespace engine {

class PartJournal;

/// The part of a file that a worker writes: true bytes from the first on, in their order, and
/// nothing else. It may at any moment be longer than anybody recorded. It is a file of its own, or
/// has its place in one that it shares with other parts; all offsets are the part's.
///
/// So that this holds after a power failure too, it is synced in the background, every 32 MiB but
/// not more than once a second, and when it is closed with more than 1 MiB to lose, and then marked
/// (see `markSynced`, or the part's journal). Any thread.
class PartialFile final : public http::HTTPBodyStore {
public:
    /// Both outlive it.
    PartialFile(platform::Disks& disks, const platform::Clock& clock)
        : disks_(disks), clock_(clock) {}
    /// Closes it.
    ~PartialFile() override;
    PartialFile(const PartialFile&) = delete;
    PartialFile& operator=(const PartialFile&) = delete;

    /// Creates the file, or goes on with a part that has `offset` bytes. A link is not followed,
    /// one that has come further or less far is not touched. Nothing: done.
    [[nodiscard]] std::optional<platform::Error> open(const PartPlace& place, qint64 offset);
    [[nodiscard]] bool isOpen() const;
    /// How long `store` may make it; 0: as long as may be. False: it is longer already, or is just
    /// being written to, and nothing was changed.
    bool setStoreLimit(qint64 length);

    /// Appends all of it. With an error, some of it may lie in the file, and the same may be tried
    /// again.
    [[nodiscard]] std::optional<platform::Error> write(const QByteArray& data);
    /// Of the disk on which it lies. Only when it is open.
    [[nodiscard]] platform::ThreadPool& writesOfDisk() const override;
    /// As `write` does. False: it is closed, the limit would be passed, or there was an error.
    [[nodiscard]] bool store(const QByteArray& data) override;
    /// Cuts it, where nobody else's bytes follow, and closes it. False: it could not be cut, and is
    /// still open.
    [[nodiscard]] bool truncate(qint64 offset);
    /// Nothing is written after that. Waits a moment for a write that is going on; one that a disk
    /// keeps for longer closes the file itself when it ends.
    void close();

private:
    struct SyncState {
        std::atomic<bool> isBusy = false;
        /// Counts cuts: what was synced before one says nothing about the bytes written after it.
        std::atomic<unsigned> cuts = 0;
    };

    [[nodiscard]] std::optional<platform::Error> append(const QByteArray& data);
    [[nodiscard]] bool cut(qint64 offset);
    [[nodiscard]] off_t inFile(qint64 offset) const { return start_ + offset; }
    void reserve(qint64 end);
    void keepDiskBusy();
    void flushInBackground();
    void syncInBackground();
    void closeFile();
    [[nodiscard]] std::unique_lock<std::mutex> lockSoon();

    platform::Disks& disks_;
    const platform::Clock& clock_;
    std::atomic<bool> isClosing_ = false;
    mutable std::mutex lock_;  ///< Guards all below.
    platform::Descriptor file_;
    std::shared_ptr<const PartJournal> journal_;  ///< Null: the file's length says what it would.
    qint64 start_ = 0;                            ///< Of the part in the file.
    qint64 offset_ = 0;
    qint64 storeLimit_ = 0;
    bool isReserving_ = false;   ///< It lies where that pays.
    qint64 reservedOffset_ = 0;  ///< Up to here there is space for it, or it was asked for in vain.
    platform::Disk* disk_ = nullptr;  ///< Null before it was open.
    qint64 syncedOffset_ = 0;         ///< Asked for, not yet known to be on the disk.
    qint64 flushedOffset_ = 0;        ///< Up to here the disk has been told to write.
    platform::Seconds syncedAt_ = 0;  ///< When it was last asked for.
    std::shared_ptr<SyncState> syncState_;
};

}  // namespace engine
