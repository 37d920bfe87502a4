#include "platform/files/descriptor.h"

#include <dirent.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace platform {

namespace {

/// Six characters follow.
constexpr QByteArrayView temporaryName = ".orlop-";

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

Descriptor openWithoutFollowing(const QByteArray& path, int flags) {
    Descriptor file(::open(path.constData(), flags | O_NOFOLLOW));
    if (file.isOpen() || errno != ELOOP)
        return file;
    struct stat named {
    }, opened{};
    const auto isPlain = [](const struct stat& status) { return S_ISREG(status.st_mode); };
    if (lstat(path.constData(), &named) == 0 && isPlain(named)) {
        file = Descriptor(::open(path.constData(), flags));
        if (file.isOpen() && fstat(file.get(), &opened) == 0 && isPlain(opened) &&
            opened.st_dev == named.st_dev && opened.st_ino == named.st_ino)
            return file;
        file.close();
    }
    errno = ELOOP;
    return Descriptor();
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
TemporaryFile::TemporaryFile(const QByteArray& path)
    : path_(folderOf(path) + '/' + temporaryName.toByteArray() + "XXXXXX") {
    file_ = Descriptor(mkostemp(path_.data(), O_CLOEXEC));
    if (!file_.isOpen())
        path_.clear();
}

TemporaryFile::~TemporaryFile() {
    if (!path_.isEmpty())
        unlink(path_.constData());
}

void TemporaryFile::removeStrays(const QByteArray& folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.constData()), &closedir);
    if (!entries)
        return;
    while (const dirent* const entry = readdir(entries.get())) {
        const QByteArray name(entry->d_name);
        struct stat status {};
        if (name.startsWith(temporaryName) && name.size() == temporaryName.size() + 6 &&
            fstatat(dirfd(entries.get()), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISREG(status.st_mode) && status.st_uid == geteuid() && status.st_nlink == 1)
            unlinkat(dirfd(entries.get()), name.constData(), 0);
    }
}

void syncFolderOf(const QByteArray& path) {
    const Descriptor folder(open(folderOf(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.isOpen())
        fsync(folder.get());
}

}  // namespace platform
