#include "engine/paths/part_journal.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QByteArrayList>
#include <QFile>

#include <algorithm>
#include <cerrno>

#include "engine/paths/boot_identifier.h"
#include "platform/files/descriptor.h"

namespace engine {
namespace {

constexpr char title[] = "Orlop part";
constexpr qsizetype lineSize = 128;
QByteArray sumOf(const QByteArray& text) {
    return QByteArray::number(qChecksum(text), 16);
}

/// Of a fixed size, so that it is always written over as a whole.
QByteArray line(const QByteArray& text) {
    return (text + ' ' + sumOf(text)).leftJustified(lineSize - 1, ' ') + '\n';
}

/// The words of a line without its sum. None: it is not whole.
QByteArrayList wordsOf(const QByteArray& line) {
    const QByteArray text = line.trimmed();
    const qsizetype end = text.lastIndexOf(' ');
    if (line.size() != lineSize || end < 0 || text.sliced(end + 1) != sumOf(text.first(end)))
        return {};
    return text.first(end).split(' ');
}

/// -1: it is none, or a negative one.
qint64 numberIn(const QByteArrayList& words, qsizetype index) {
    bool isNumber = false;
    const qint64 number = words.value(index).toLongLong(&isNumber);
    return isNumber ? std::max<qint64>(number, -1) : -1;
}

bool writeLine(const platform::Descriptor& file, const QByteArray& text, off_t offset) {
    const QByteArray bytes = line(text);
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t written =
            pwrite(file.get(), bytes.constData() + done,
                   static_cast<std::size_t>(bytes.size() - done), offset + done);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

std::optional<PartJournal::Entry> entryIn(const platform::Descriptor& file) {
    QByteArray bytes(2 * lineSize, '\0');
    const ssize_t got = pread(file.get(), bytes.data(), static_cast<std::size_t>(bytes.size()), 0);
    if (got < lineSize)
        return std::nullopt;
    const QByteArrayList first = wordsOf(bytes.first(lineSize));
    const QByteArrayList second = wordsOf(bytes.sliced(lineSize));
    // "Orlop part START RECEIVED BOOT", and "SYNCED".
    const qint64 start = numberIn(first, 2), received = numberIn(first, 3);
    if (!bytes.startsWith(title) || start < 0 || received < 0)
        return std::nullopt;
    const bool isOfThisBoot = first.value(4) == bootIdentifier();
    const qint64 synced = std::max<qint64>(numberIn(second, 0), 0);
    return PartJournal::Entry{start, isOfThisBoot ? received : std::min(received, synced)};
}

}  // namespace

std::optional<PartJournal::Entry> PartJournal::read(const QString& path) {
    const platform::Descriptor file =
        platform::openWithoutFollowing(QFile::encodeName(path), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    return file.isOpen() ? entryIn(file) : std::nullopt;
}

std::shared_ptr<PartJournal> PartJournal::open(const QString& path, qint64 start) {
    const QByteArray name = QFile::encodeName(path);
    constexpr int flags = O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;
    platform::Descriptor file(
        ::open(name.constData(), flags | O_CREAT | O_EXCL, platform::newFileMode));
    if (!file.isOpen() && errno == EEXIST)
        file = platform::openWithoutFollowing(name, flags);
    struct stat status {};
    if (!file.isOpen() || fstat(file.get(), &status) != 0)
        return nullptr;
    const auto entry = entryIn(file);
    const bool isFree = status.st_size == 0 || (entry && entry->start == start);
    if (!S_ISREG(status.st_mode) || status.st_nlink > 1 || !isFree) {
        errno = ESTALE;
        return nullptr;
    }
    return std::shared_ptr<PartJournal>(
        new PartJournal(std::move(file), start, entry ? entry->received : 0));
}

bool PartJournal::setReceived(qint64 bytes) const {
    return writeLine(file_,
                     QByteArray(title) + ' ' + QByteArray::number(start_) + ' ' +
                         QByteArray::number(bytes) + ' ' + bootIdentifier(),
                     0);
}

void PartJournal::setSynced(qint64 bytes) const {
    if (writeLine(file_, QByteArray::number(bytes), lineSize))
        fdatasync(file_.get());
}

}  // namespace engine
