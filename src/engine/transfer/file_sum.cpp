#include "engine/transfer/file_sum.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QByteArray>
#include <QFile>
#include <algorithm>
#include <cerrno>

namespace engine {
namespace {

/// Between two looks at the cancel flag.
constexpr qint64 blockSize = qint64{1} << 20;

}  // namespace

bool SumReader::open() {
    if (file_.isOpen())
        return true;
    // Of what is no file an opening may wait for ever.
    file_ = platform::Descriptor(
        ::open(QFile::encodeName(path_).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file_.isOpen())
        posix_fadvise(file_.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    else
        error_ = platform::posixError(errno);
    return file_.isOpen();
}

bool SumReader::readTo(qint64 end, const std::atomic<bool>& isCancelled) {
    const std::scoped_lock guard(lock_);
    return read(end, isCancelled);
}

bool SumReader::read(qint64 end, const std::atomic<bool>& isCancelled) {
    hasFailed_ = hasFailed_ || !open();
    QByteArray buffer(hasFailed_ ? 0 : std::min(blockSize, end - offset_), Qt::Uninitialized);
    while (!hasFailed_ && offset_ < end) {
        const qint64 most = std::min<qint64>(buffer.size(), end - offset_);
        const ssize_t got =
            isCancelled ? 0 : ::read(file_.get(), buffer.data(), static_cast<std::size_t>(most));
        if (got < 0 && errno == EINTR)
            continue;
        if (got > 0) {
            digest_.add(QByteArrayView(buffer.constData(), got));
            offset_ += got;
        } else if (got == 0 && end == toTheEnd && !isCancelled) {
            break;
        } else {
            // Whoever cut it may write other bytes there.
            hasFailed_ = true;
            if (got < 0)
                error_ = platform::posixError(errno);
        }
    }
    return !hasFailed_;
}

bool SumReader::isReading(const QString& path) {
    const std::scoped_lock guard(lock_);
    struct stat own {
    }, there{};
    return !hasFailed_ && file_.isOpen() && fstat(file_.get(), &own) == 0 &&
           stat(QFile::encodeName(path).constData(), &there) == 0 && own.st_dev == there.st_dev &&
           own.st_ino == there.st_ino && there.st_size >= offset_;
}

FileSum SumReader::finish(const std::atomic<bool>& isCancelled) {
    const std::scoped_lock guard(lock_);
    const qint64 before = offset_;
    if (!read(toTheEnd, isCancelled))
        return {{}, error_, before};
    return {Checksum{algorithm_, digest_.result()}, {}, before};
}

}  // namespace engine
