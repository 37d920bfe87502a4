#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/base/error.h"
#include "platform/files/descriptor.h"

namespace platform {
class Disks;
}

namespace engine {

/// Reads a file of this machine block by block in the background. At most one block is on its way,
/// so that a slow disk at the other end slows the reading. Main thread.
class FileSource : public std::enable_shared_from_this<FileSource> {
public:
    struct Receiver {
        /// Keeping the data costs no copy. Nothing more is read before `readNext`.
        std::function<void(const QByteArray&)> data;
        std::function<void()> finished;
        std::function<void(const platform::Error&)> failed;
    };

    [[nodiscard]] static std::shared_ptr<FileSource> make(platform::Disks& disks) {
        return std::shared_ptr<FileSource>(new FileSource(disks));
    }
    ~FileSource() { stop(); }

    /// Nothing: done.
    [[nodiscard]] std::optional<platform::Error> open(const QString& path);
    [[nodiscard]] qint64 size() const { return size_; }
    /// Differs from that of any other file, and of any other content that it had, as far as the
    /// file system tells.
    [[nodiscard]] QString version() const;
    /// Whether it has changed since another file was last written to.
    [[nodiscard]] bool isNewerThan(const QString& otherPath) const;

    /// What is read goes from `offset` to the end that the file had when it was opened; a file that
    /// has become shorter by then fails. Nothing is read before `readNext`.
    void start(qint64 offset, Receiver receiver);
    static constexpr qint64 blockSize = qint64{2} << 20;
    /// The data that came last is dealt with: `most` bytes at most are read.
    void readNext(qint64 most);
    /// Nothing reaches the receiver after this returns.
    void stop() { receiver_ = {}; }

private:
    struct Block;

    explicit FileSource(platform::Disks& disks) : disks_(disks) {}
    void take(const Block& block);

    platform::Disks& disks_;
    std::shared_ptr<platform::Descriptor> file_;
    std::uint64_t device_ = 0, inode_ = 0;
    Receiver receiver_;
    qint64 size_ = 0;
    qint64 offset_ = 0;
    qint64 modified_ = 0;  ///< Nanoseconds.
};

}  // namespace engine
