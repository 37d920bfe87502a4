#pragma once

#include <QString>
#include <memory>
#include <optional>

#include "platform/files/descriptor.h"

namespace engine {

/// What a part's own file says when the bytes of the part lie at their place in the one partial
/// file: where the part begins there, and how many of its bytes have come.
///
/// It is a file of two short lines, each with a sum of its own and a writer of its own: the first
/// is written behind every block, the second behind every sync. Not the length of an empty file:
/// that is metadata, which a disk may have before it has the bytes, and on network file systems
/// costs a round trip a block; lines can say besides what was synced and in which boot, need no
/// attributes, and survive any copying.
class PartJournal {
public:
    struct Entry {
        qint64 start = 0;
        qint64 received = 0;  ///< After a power failure only what had been synced.
    };

    /// Nothing: there is none, or it is not one.
    [[nodiscard]] static std::optional<Entry> read(const QString& path);
    /// Of a new one, or of one for this start. Null: errno says why.
    [[nodiscard]] static std::shared_ptr<PartJournal> open(const QString& path, qint64 start);

    /// When it was opened.
    [[nodiscard]] qint64 received() const { return received_; }
    /// So many bytes of the part are in the partial file. One thread at a time. False: errno says
    /// why, and it says what it said.
    [[nodiscard]] bool setReceived(qint64 bytes) const;
    /// So many of them are on the disk. Waits until that is, too. Any thread.
    void setSynced(qint64 bytes) const;

private:
    PartJournal(platform::Descriptor file, qint64 start, qint64 received)
        : file_(std::move(file)), start_(start), received_(received) {}

    const platform::Descriptor file_;
    const qint64 start_;
    const qint64 received_;
};

}  // namespace engine
