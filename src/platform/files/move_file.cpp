#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <QFile>
#include <QList>
#include <algorithm>
#include <cerrno>

#include "platform/base/log.h"
#include "platform/files/descriptor.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

std::optional<Error> lastError() {
    return posixError(errno);
}

/// For file systems that know neither a rename without replacing nor hard links: an empty
/// placeholder of our own takes the name, and only that is replaced.
std::optional<Error> renameOverPlaceholder(const QByteArray& from, const QByteArray& to,
                                           bool isFolder) {
    if (isFolder) {
        if (mkdir(to.constData(), S_IRWXU) != 0)
            return lastError();
    } else {
        const Descriptor placeholder(
            open(to.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR));
        if (!placeholder.isOpen())
            return lastError();
    }
    if (rename(from.constData(), to.constData()) == 0)
        return std::nullopt;
    const std::optional<Error> error = lastError();
    isFolder ? rmdir(to.constData()) : unlink(to.constData());
    return error;
}

bool isMissingFeature(int errorNumber) {
    return errorNumber == EINVAL || errorNumber == ENOSYS || errorNumber == EOPNOTSUPP ||
           errorNumber == EPERM || errorNumber == EMLINK;
}

/// Code EXDEV: the two are on different file systems.
std::optional<Error> renameWithoutReplacing(const QByteArray& from, const QByteArray& to) {
    if (renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return std::nullopt;
    if (!isMissingFeature(errno))
        return lastError();
    struct stat status {};
    if (lstat(from.constData(), &status) != 0)
        return lastError();
    if (!S_ISDIR(status.st_mode)) {
        if (link(from.constData(), to.constData()) == 0) {
            unlink(from.constData());
            return std::nullopt;
        }
        if (!isMissingFeature(errno))
            return lastError();
    }
    return renameOverPlaceholder(from, to, S_ISDIR(status.st_mode));
}

/// As far as the target's file system keeps them.
void copyAttributes(const Descriptor& from, const Descriptor& to) {
    QByteArray names(XATTR_LIST_MAX, Qt::Uninitialized);
    const ssize_t length =
        flistxattr(from.get(), names.data(), static_cast<std::size_t>(names.size()));
    names.truncate(std::max<ssize_t>(length, 0));
    for (const QByteArray& name : names.split('\0')) {
        if (!name.startsWith("user."))
            continue;
        QByteArray value(XATTR_SIZE_MAX, Qt::Uninitialized);
        const ssize_t size = fgetxattr(from.get(), name.constData(), value.data(),
                                       static_cast<std::size_t>(value.size()));
        if (size >= 0)
            fsetxattr(to.get(), name.constData(), value.constData(), static_cast<std::size_t>(size),
                      0);
    }
}

bool copyByHand(const Descriptor& from, const Descriptor& to) {
    QByteArray block(1024LL * 1024, Qt::Uninitialized);
    for (;;) {
        const ssize_t got = read(from.get(), block.data(), static_cast<std::size_t>(block.size()));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return got == 0;
        if (!writeFully(to, block.constData(), got))
            return false;
    }
}

bool copyContents(const Descriptor& from, const Descriptor& to) {
    constexpr std::size_t stretch = std::size_t{1} << 30;
    for (;;) {
        const ssize_t copied = copy_file_range(from.get(), nullptr, to.get(), nullptr, stretch, 0);
        if (copied > 0 || (copied < 0 && errno == EINTR))
            continue;
        if (copied < 0 && errno != EXDEV && errno != EIO && !isMissingFeature(errno))
            return false;
        // Both offsets stand where the kernel's copy ended; some file systems end it too early.
        return copyByHand(from, to);
    }
}

std::optional<Error> copyAndRemove(const QByteArray& from, const QByteArray& to) {
    const Descriptor source = openWithoutFollowing(from, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat status {};
    if (!source.isOpen() || fstat(source.get(), &status) != 0)
        return lastError();
    if (!S_ISREG(status.st_mode))
        return posixError(EXDEV);
    TemporaryFile copy(to);
    if (!copy.isOpen() || !copyContents(source, copy.file()))
        return lastError();
    copyAttributes(source, copy.file());
    const timespec times[] = {status.st_atim, status.st_mtim};
    futimens(copy.file().get(), times);
    fchmod(copy.file().get(), status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO));
    if (fsync(copy.file().get()) != 0)
        return lastError();
    if (const std::optional<Error> error = renameWithoutReplacing(copy.path(), to))
        return error;
    copy.setPlaced();
    syncFolderOf(to);
    if (unlink(from.constData()) != 0)
        log(u"cannot remove \"%1\" after copying it: %2"_s.arg(QFile::decodeName(from),
                                                               posixError(errno).text),
            LogLevel::Warning);
    return std::nullopt;
}

}  // namespace

std::optional<Error> moveFile(const QString& from, const QString& to) {
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    const std::optional<Error> error = renameWithoutReplacing(source, target);
    if (!error || error->code != EXDEV)
        return error;
    // Before gigabytes are copied for nothing.
    if (pathExists(to))
        return posixError(EEXIST);
    return copyAndRemove(source, target);
}

}  // namespace platform
