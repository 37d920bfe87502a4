#include "engine/workers/file_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QFile>

#include <algorithm>
#include <cerrno>

#include "platform/files/disks.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

qint64 nanoseconds(const timespec& time) {
    constexpr qint64 nanosecondsPerSecond = 1'000'000'000;
    return qint64{time.tv_sec} * nanosecondsPerSecond + time.tv_nsec;
}

}  // namespace

struct FileSource::Block {
    QByteArray data;
    int errorNumber = 0;
};

std::optional<platform::Error> FileSource::open(const QString& path) {
    // Not to wait for a writer if it is a pipe, which is refused below.
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;
    auto file =
        std::make_shared<platform::Descriptor>(::open(QFile::encodeName(path).constData(), flags));
    struct stat status {};
    if (!file->isOpen() || fstat(file->get(), &status) != 0)
        return platform::posixError(errno);
    if (!S_ISREG(status.st_mode))
        return platform::posixError(S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP);
    file_ = std::move(file);
    device_ = status.st_dev;
    inode_ = status.st_ino;
    size_ = status.st_size;
    modified_ = nanoseconds(status.st_mtim);
    return std::nullopt;
}

QString FileSource::version() const {
    return u"%1-%2-%3"_s.arg(inode_).arg(size_).arg(modified_);
}

bool FileSource::isNewerThan(const QString& otherPath) const {
    struct stat status {};
    return lstat(QFile::encodeName(otherPath).constData(), &status) != 0 ||
           modified_ > nanoseconds(status.st_mtim);
}

void FileSource::start(qint64 offset, Receiver receiver) {
    offset_ = offset;
    receiver_ = std::move(receiver);
}

void FileSource::readNext(qint64 most) {
    auto block = std::make_shared<Block>();
    const qint64 wanted = std::min(most, size_ - offset_);
    disks_.ofDevice(device_).run(
        [block, wanted, file = file_, offset = offset_] {
            if (wanted <= 0)
                return;
            block->data.resize(wanted);
            const ssize_t count =
                pread(file->get(), block->data.data(), static_cast<std::size_t>(wanted), offset);
            if (count < 0)
                block->errorNumber = errno;
            else if (count == 0)
                block->errorNumber = ESTALE;
            block->data.resize(std::max<qsizetype>(count, 0));
        },
        [weak = weak_from_this(), block] {
            if (const auto source = weak.lock())
                source->take(*block);
        });
}

void FileSource::take(const Block& block) {
    const Receiver receiver = receiver_;
    if (!receiver.finished)
        return;
    if (block.errorNumber != 0)
        return receiver.failed(platform::posixError(block.errorNumber));
    if (block.data.isEmpty())
        return receiver.finished();
    offset_ += block.data.size();
    receiver.data(block.data);
}

}  // namespace engine
