#include "platform/files/descriptor.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>

namespace platform {

namespace {

QByteArray folderOf(const QByteArray& path) {
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0)
        return ".";
    return slash == 0 ? QByteArray("/") : path.first(slash);
}

}  // namespace

void Descriptor::close() {
    if (number_ >= 0)
        ::close(number_);
    number_ = -1;
}

bool writeFully(const Descriptor& file, const char* bytes, qint64 count) {
    while (count > 0) {
        const ssize_t written = ::write(file.get(), bytes, static_cast<std::size_t>(count));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        bytes += written;
        count -= written;
    }
    return true;
}

/// The name does not grow with the target's, which may already be as long as names can be.
TemporaryFile::TemporaryFile(const QByteArray& path) : path_(folderOf(path) + "/.orlop-XXXXXX") {
    file_ = Descriptor(mkostemp(path_.data(), O_CLOEXEC));
    if (!file_.isOpen())
        path_.clear();
}

TemporaryFile::~TemporaryFile() {
    if (!path_.isEmpty())
        unlink(path_.constData());
}

void syncFolderOf(const QByteArray& path) {
    const Descriptor folder(open(folderOf(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.isOpen())
        fsync(folder.get());
}

}  // namespace platform
