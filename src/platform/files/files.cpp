#include "platform/files/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStorageInfo>
#include <algorithm>
#include <cerrno>

#include "platform/base/log.h"
#include "platform/files/descriptor.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

QString expandTilde(const QString& path) {
    if (path == u"~" || path.startsWith(u"~/"))
        return QDir::homePath() + path.mid(1);
    return path;
}

QString abbreviateWithTilde(const QString& path) {
    const QString home = QDir::homePath();
    if (home == u"/" || !path.startsWith(home))
        return path;
    const QString rest = path.mid(home.size());
    return rest.isEmpty() || rest.startsWith(u'/') ? u'~' + rest : path;
}

bool pathExists(const QString& path) {
    struct stat status {};
    return !path.isEmpty() && lstat(QFile::encodeName(path).constData(), &status) == 0;
}

bool isSameFile(const QString& path, const QString& other) {
    struct stat first {
    }, second{};
    return lstat(QFile::encodeName(path).constData(), &first) == 0 &&
           lstat(QFile::encodeName(other).constData(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

namespace {

/// Small pieces gathered to calls that are worth their while.
bool writePieces(const Descriptor& file, std::span<const QByteArray> pieces) {
    constexpr qsizetype blockSize = 256LL * 1024;
    QByteArray block;
    for (const QByteArray& piece : pieces) {
        if (block.size() + piece.size() > blockSize) {
            if (!writeFully(file, block.constData(), block.size()))
                return false;
            block.resize(0);
        }
        if (piece.size() < blockSize)
            block += piece;
        else if (!writeFully(file, piece.constData(), piece.size()))
            return false;
    }
    return writeFully(file, block.constData(), block.size());
}

std::optional<Error> placeFile(const QByteArray& target, std::span<const QByteArray> pieces,
                               bool isSynced) {
    TemporaryFile temporary(target);
    if (!temporary.isOpen() || !writePieces(temporary.file(), pieces) ||
        (isSynced && fsync(temporary.file().get()) != 0) ||
        rename(temporary.path().constData(), target.constData()) != 0)
        return posixError(errno);
    temporary.setPlaced();
    if (isSynced)
        syncFolderOf(target);
    return std::nullopt;
}

}  // namespace

std::optional<Error> writeFileAtomically(const QString& path, const QByteArray& data) {
    return writeFileAtomically(path, std::span(&data, 1));
}

std::optional<Error> writeFileAtomically(const QString& path, std::span<const QByteArray> pieces) {
    return placeFile(QFile::encodeName(path), pieces, true);
}

std::optional<Error> writeFileAtOnce(const QString& path, const QByteArray& data) {
    return placeFile(QFile::encodeName(path), std::span(&data, 1), false);
}

namespace {

/// Reads on while the file grows, and answers EFBIG rather than a part.
FileContents readAll(const Descriptor& file, qint64 expectedBytes, qint64 maximumBytes) {
    QByteArray data;
    // One byte more than is expected shows the end without another growth.
    qint64 wanted = expectedBytes + 1;
    qint64 count = 0;
    for (;;) {
        data.resize(wanted);
        const ssize_t got =
            read(file.get(), data.data() + count, static_cast<std::size_t>(wanted - count));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return {{}, posixError(errno)};
        count += got;
        if (count > maximumBytes)
            return {{}, posixError(EFBIG)};
        if (got == 0)
            break;
        if (count == wanted)
            wanted = std::min(2 * wanted, maximumBytes + 1);
    }
    data.truncate(count);
    return {data, std::nullopt};
}

}  // namespace

FileContents readFile(const QString& path, qint64 maximumBytes) {
    // O_NONBLOCK: opening a pipe that lies there in place of a file must not wait for a writer.
    const Descriptor file(
        open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen())
        return {{}, posixError(errno)};
    struct stat status {};
    if (fstat(file.get(), &status) != 0)
        return {{}, posixError(errno)};
    if (!S_ISREG(status.st_mode))
        return {{}, posixError(S_ISDIR(status.st_mode) ? EISDIR : EINVAL)};
    if (status.st_size > maximumBytes)
        return {{}, posixError(EFBIG)};
    return readAll(file, status.st_size, maximumBytes);
}

void logUnreadableFile(const QString& path, const Error& error) {
    log(u"cannot read \"%1\" (%2); it is left as it is"_s.arg(path, error.text), LogLevel::Error);
}

QString keepDamagedFileAside(const QString& path) {
    const QString ending =
        u".damaged-"_s + QDateTime::currentDateTime().toString(u"yyyyMMdd-HHmmss"_s);
    constexpr int mostTries = 1000;
    for (int count = 1; count <= mostTries; ++count) {
        const QString counter = count == 1 ? QString() : u' ' + QString::number(count);
        const QString aside = path + counter + ending;
        const std::optional<Error> error = moveFile(path, aside);
        if (!error) {
            log(u"cannot understand \"%1\", kept aside as \"%2\""_s.arg(path, aside),
                LogLevel::Warning);
            return aside;
        }
        if (error->code != EEXIST) {
            log(u"cannot understand \"%1\", and cannot move it aside: %2"_s.arg(path, error->text),
                LogLevel::Error);
            break;
        }
    }
    return {};
}

std::optional<qint64> fileSize(const QString& path) {
    struct stat status {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return status.st_size;
}

bool setExtendedAttribute(const QString& path, const QString& name, const QByteArray& value) {
    return lsetxattr(QFile::encodeName(path).constData(), name.toUtf8().constData(),
                     value.constData(), static_cast<std::size_t>(value.size()), 0) == 0;
}

bool setExtendedAttribute(const Descriptor& file, const QString& name, const QByteArray& value) {
    return fsetxattr(file.get(), name.toUtf8().constData(), value.constData(),
                     static_cast<std::size_t>(value.size()), 0) == 0;
}

std::optional<QByteArray> extendedAttribute(const QString& path, const QString& name) {
    const QByteArray file = QFile::encodeName(path);
    const QByteArray attribute = name.toUtf8();
    const ssize_t size = lgetxattr(file.constData(), attribute.constData(), nullptr, 0);
    if (size <= 0)
        return std::nullopt;
    QByteArray value(size, Qt::Uninitialized);
    const ssize_t got = lgetxattr(file.constData(), attribute.constData(), value.data(),
                                  static_cast<std::size_t>(value.size()));
    if (got <= 0)
        return std::nullopt;
    value.truncate(got);
    return value;
}

namespace {

bool canTakeFiles(const QString& trash) {
    const auto isWritable = [](const QString& folder) {
        return QDir().mkpath(folder) && QFileInfo(folder).isWritable();
    };
    return isWritable(trash + u"/files"_s) && isWritable(trash + u"/info"_s);
}

/// Where freedesktop.org lets the file be thrown away; what is called for the moving does not
/// look itself, and puts files into the current folder where there is no trash.
bool hasTrash(const QString& path) {
    const QString home =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Trash"_s;
    if (canTakeFiles(home))
        return true;
    if (QStorageInfo(path) == QStorageInfo(QDir::home()))
        return false;
    const QString user = QString::number(getuid());
    const QString volume = volumePath(path);
    const QString shared = volume + u"/.Trash"_s;
    return (QFileInfo(shared).isDir() && canTakeFiles(shared + u'/' + user)) ||
           canTakeFiles(volume + u"/.Trash-"_s + user);
}

}  // namespace

bool moveToTrash(const QString& path) {
    return pathExists(path) && hasTrash(path) && QFile::moveToTrash(path);
}

}  // namespace platform
