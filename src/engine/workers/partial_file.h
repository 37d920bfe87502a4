#pragma once

#include <QByteArray>
#include <QString>
#include <atomic>
#include <memory>
#include <optional>

#include "platform/base/clock.h"
#include "platform/base/error.h"
#include "platform/files/descriptor.h"

namespace engine {

/// The file that a worker writes: true bytes from the first on, in their order, and nothing else.
/// It may at any moment be longer than anybody recorded.
///
/// So that this holds after a power failure too, it is synced in the background, every 32 MiB but
/// not more than once a second, and when it is closed with more than 1 MiB to lose, and then marked
/// (see `markSynced`). Main thread.
class PartialFile {
public:
    PartialFile() = default;
    /// Closes it.
    ~PartialFile();
    PartialFile(const PartialFile&) = delete;
    PartialFile& operator=(const PartialFile&) = delete;

    /// Creates the file, or goes on with one that has `offset` bytes. A link is not followed, a
    /// file of another size is not touched. Nothing: done.
    [[nodiscard]] std::optional<platform::Error> open(const QString& path, qint64 offset);
    [[nodiscard]] bool isOpen() const { return file_.isOpen(); }

    /// Appends all of it. With an error, some of it may have been appended.
    [[nodiscard]] std::optional<platform::Error> write(const QByteArray& data);
    /// Cuts it and goes on from there. False: it could not be cut.
    [[nodiscard]] bool truncate(qint64 offset);
    void close();

private:
    struct SyncState {
        std::atomic<bool> isBusy = false;
        /// Counts cuts: what was synced before one says nothing about the bytes written after it.
        std::atomic<unsigned> cuts = 0;
    };

    void flushInBackground();
    void syncInBackground();

    platform::Descriptor file_;
    qint64 offset_ = 0;
    qint64 syncedOffset_ = 0;         ///< Asked for, not yet known to be on the disk.
    qint64 flushedOffset_ = 0;        ///< Up to here the disk has been told to write.
    platform::Seconds syncedAt_ = 0;  ///< When it was last asked for.
    std::shared_ptr<SyncState> syncState_;
};

}  // namespace engine
