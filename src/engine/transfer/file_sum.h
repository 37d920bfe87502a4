#pragma once

#include <QString>
#include <atomic>
#include <limits>
#include <mutex>
#include <optional>

#include "engine/record/checksum.h"
#include "platform/base/digest.h"
#include "platform/base/error.h"
#include "platform/files/descriptor.h"

namespace engine {

/// What reading a file to its end has given: one of the two, or none if it was cancelled.
struct FileSum {
    std::optional<Checksum> checksum;
    std::optional<platform::Error> error;
    qint64 before = 0;  ///< Bytes that had been read while it grew.
};

/// Adds a file up from its first byte on, as far as it is told each time. It keeps the file open,
/// so that no other one can pass for it. Any thread of its disk.
class SumReader {
public:
    static constexpr qint64 toTheEnd = std::numeric_limits<qint64>::max();

    SumReader(QString path, QCryptographicHash::Algorithm algorithm)
        : path_(std::move(path)), algorithm_(algorithm), digest_(algorithm) {}

    [[nodiscard]] QCryptographicHash::Algorithm algorithm() const { return algorithm_; }
    /// False: `isCancelled`, or it cannot be read so far. Then it is of no more use.
    [[nodiscard]] bool readTo(qint64 end, const std::atomic<bool>& isCancelled);
    /// Whether it has read from the very file that lies there now, and nothing that is not in it.
    [[nodiscard]] bool isReading(const QString& path);
    /// Reads what is left. Nothing can be read after that.
    [[nodiscard]] FileSum finish(const std::atomic<bool>& isCancelled);

private:
    [[nodiscard]] bool open();
    [[nodiscard]] bool read(qint64 end, const std::atomic<bool>& isCancelled);

    const QString path_;
    const QCryptographicHash::Algorithm algorithm_;
    std::mutex lock_;  ///< Guards all below.
    platform::Descriptor file_;
    platform::Digest digest_;
    qint64 offset_ = 0;
    bool hasFailed_ = false;
    std::optional<platform::Error> error_;
};

}  // namespace engine
