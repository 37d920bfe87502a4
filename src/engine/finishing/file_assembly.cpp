#include "engine/finishing/file_assembly.h"

#include <fcntl.h>
#include <unistd.h>
#include <QByteArray>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>

#include "engine/workers/partial_file_marks.h"
#include "platform/base/log.h"
#include "platform/files/descriptor.h"
#include "platform/files/disks.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

using platform::Descriptor;

/// Between two looks at the cancel flag.
constexpr qint64 chunkSize = qint64{32} << 20;
constexpr qint64 bufferSize = qint64{1} << 20;

Descriptor openPiece(const QString& path, int flags) {
    return platform::openWithoutFollowing(QFile::encodeName(path), flags | O_CLOEXEC);
}

platform::Error failure(const QString& text, int errorNumber) {
    const platform::Error reason = platform::posixError(errorNumber);
    platform::log(text + u" ("_s + reason.text + u')');
    return {reason.domain, reason.code, text, std::make_shared<const platform::Error>(reason)};
}

/// For file systems between which the kernel cannot copy. -1: errno says why.
ssize_t copyThroughMemory(const Descriptor& from, off_t source, const Descriptor& to, off_t target,
                          qint64 count) {
    QByteArray buffer(std::min(count, bufferSize), Qt::Uninitialized);
    const ssize_t got =
        pread(from.get(), buffer.data(), static_cast<std::size_t>(buffer.size()), source);
    if (got <= 0)
        return got;
    return pwrite(to.get(), buffer.constData(), static_cast<std::size_t>(got), target);
}

ssize_t copySome(const Descriptor& from, off_t source, const Descriptor& to, off_t target,
                 qint64 count) {
    const ssize_t copied =
        copy_file_range(from.get(), &source, to.get(), &target, static_cast<std::size_t>(count), 0);
    const bool cannot = copied < 0 && (errno == EXDEV || errno == EINVAL || errno == ENOSYS ||
                                       errno == EOPNOTSUPP || errno == EPERM);
    return cannot ? copyThroughMemory(from, source, to, target, count) : copied;
}

AssemblyResult append(const FilePiece& piece, const Descriptor& source, const Descriptor& target,
                      qint64 offset, const std::atomic<bool>& isCancelled) {
    if (!source.isOpen())
        return {false, failure(u"cannot read from partial file: %1"_s.arg(piece.path), errno)};
    for (qint64 done = 0; done < piece.length;) {
        if (isCancelled)
            return {true, std::nullopt};
        const ssize_t copied =
            copySome(source, done, target, offset + done, std::min(chunkSize, piece.length - done));
        if (copied < 0 && errno == EINTR)
            continue;
        if (copied == 0)
            return {false, failure(u"cannot read from partial file: %1"_s.arg(piece.path), ESTALE)};
        if (copied < 0)
            return {false,
                    failure(u"cannot append partial files to primary file: %1"_s.arg(piece.path),
                            errno)};
        // The disk works while the next chunk is copied, so that little is left for the sync.
        sync_file_range(target.get(), offset + done, copied, SYNC_FILE_RANGE_WRITE);
        done += copied;
    }
    return {};
}

/// Its name at once; its space, which takes a while for a large one, when `source` is closed.
void removePiece(const QString& path, Descriptor source, platform::Disk& disk) {
    if (unlink(QFile::encodeName(path).constData()) != 0)
        platform::log(
            u"cannot remove partial file: %1 (%2)"_s.arg(path, platform::posixError(errno).text));
    disk.run([kept = std::make_shared<Descriptor>(std::move(source))] { kept->close(); });
}

}  // namespace

AssemblyResult assembleFile(const std::vector<FilePiece>& pieces,
                            const std::atomic<bool>& isCancelled, platform::Disk& disk) {
    const FilePiece& first = pieces.front();
    const auto cannotAppend = [&](int errorNumber) {
        return AssemblyResult{
            false, failure(u"cannot append partial files to primary file: %1"_s.arg(first.path),
                           errorNumber)};
    };
    const Descriptor target = openPiece(first.path, O_WRONLY);
    // What stands behind the first piece is a copy of what comes next, cut short.
    if (!target.isOpen() || (pieces.size() > 1 && ftruncate(target.get(), first.length) != 0) ||
        fdatasync(target.get()) != 0)
        return cannotAppend(errno);
    // Before more is appended: what follows is not on the disk only because something was before.
    markSynced(target.get(), first.length);
    qint64 offset = first.length;
    for (auto piece = pieces.begin() + 1; piece != pieces.end(); ++piece) {
        Descriptor source = openPiece(piece->path, O_RDONLY);
        AssemblyResult result = append(*piece, source, target, offset, isCancelled);
        if (result.isCancelled || result.error)
            return result;
        if (fdatasync(target.get()) != 0)
            return cannotAppend(errno);
        offset += piece->length;
        // Or else what is joined would be cut off after a power failure, with its piece gone.
        markSynced(target.get(), offset);
        removePiece(piece->path, std::move(source), disk);
    }
    return {isCancelled, std::nullopt};
}

}  // namespace engine
