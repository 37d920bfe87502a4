#include "platform/base/log_spool.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <array>
#include <atomic>
#include <cstring>
#include <utility>

#include "platform/files/descriptor.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

constexpr std::array<char, 8> magic{'O', 'r', 'l', 'o', 'p', 'L', 'o', '1'};
constexpr std::size_t longestPath = 4000;

/// Ahead of the characters of each line.
struct LineHeader {
    std::int64_t microseconds;
    std::uint32_t level;
    std::uint32_t bytes;
};

struct Half {
    std::uint64_t turn;  ///< The half with the greater one was begun later.
    std::uint64_t used;
    std::array<char, LogSpool::bytesOfHalf - 2 * sizeof(std::uint64_t)> lines;
};

struct Content {
    std::array<char, 8> magic;
    std::int64_t processID;
    std::uint64_t pathBytes;
    std::array<char, longestPath> path;
    std::array<Half, 2> halves;
};

QByteArray spoolPath(const QString& folder, qint64 processID) {
    return QFile::encodeName(folder) + "/log-" + QByteArray::number(processID) + ".spool";
}

/// Visible only once it is whole and locked, so that nobody takes it for a dead one's.
Descriptor madeFile(const QByteArray& folder, const QByteArray& path) {
    Descriptor file(open(folder.constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR));
    const QByteArray self = "/proc/self/fd/" + QByteArray::number(file.get());
    // With its memory, so that none can be missing later.
    const bool isMade =
        file.isOpen() && posix_fallocate(file.get(), 0, sizeof(Content)) == 0 &&
        flock(file.get(), LOCK_EX | LOCK_NB) == 0 &&
        linkat(AT_FDCWD, self.constData(), AT_FDCWD, path.constData(), AT_SYMLINK_FOLLOW) == 0;
    return isMade ? std::move(file) : Descriptor();
}

/// Unmaps what it owns. Null: it could not be mapped.
struct Unmapper {
    void operator()(Content* content) const { munmap(content, sizeof(Content)); }
};
using Mapped = std::unique_ptr<Content, Unmapper>;

Mapped mapped(const Descriptor& file) {
    void* const place = file.isOpen() ? mmap(nullptr, sizeof(Content), PROT_READ | PROT_WRITE,
                                             MAP_SHARED, file.get(), 0)
                                      : MAP_FAILED;
    return Mapped(place == MAP_FAILED ? nullptr : static_cast<Content*>(place));
}

/// False: `write` answered so.
bool takeLines(const Half& half, const LogOrigin& origin,
               const std::function<bool(const LogRecord&, const LogOrigin&)>& write) {
    std::size_t left = std::min<std::size_t>(half.used, half.lines.size());
    const char* at = half.lines.data();
    while (left > sizeof(LineHeader)) {
        LineHeader header{};
        std::memcpy(&header, at, sizeof header);
        if (header.bytes > left - sizeof header)
            return true;
        QString line(static_cast<qsizetype>(header.bytes / sizeof(QChar)), Qt::Uninitialized);
        std::memcpy(line.data(), at + sizeof header, static_cast<std::size_t>(line.size()) * 2);
        const auto level = static_cast<LogLevel>(std::min(header.level, 3U));
        if (!write({header.microseconds, level, line}, origin))
            return false;
        at += sizeof header + header.bytes;
        left -= sizeof header + header.bytes;
    }
    return true;
}

}  // namespace

struct LogSpool::File {
    QByteArray path;
    Descriptor descriptor;
    Mapped content;
    std::size_t active = 0;

    Half& half(std::size_t index) const { return content->halves[index]; }
};

LogSpool::LogSpool(std::unique_ptr<File> file) : file_(std::move(file)) {}

std::unique_ptr<LogSpool> LogSpool::make(const QString& folder) {
    const LogOrigin origin = ownLogOrigin();
    const QByteArray executable = origin.path.toUtf8();
    auto file = std::make_unique<File>();
    file->path = spoolPath(folder, origin.processID);
    file->descriptor = madeFile(QFile::encodeName(folder), file->path);
    file->content = mapped(file->descriptor);
    if (!file->content || static_cast<std::size_t>(executable.size()) > longestPath)
        return nullptr;
    Content& content = *file->content;
    content.processID = origin.processID;
    content.pathBytes = static_cast<std::uint64_t>(executable.size());
    std::memcpy(content.path.data(), executable.constData(), content.pathBytes);
    content.halves[0].turn = 1;
    content.magic = magic;
    return std::unique_ptr<LogSpool>(new LogSpool(std::move(file)));
}

LogSpool::~LogSpool() {
    if (file_->half(0).used == 0 && file_->half(1).used == 0)
        unlink(file_->path.constData());
}

void LogSpool::add(const LogRecord& record) {
    Half& half = file_->half(file_->active);
    const std::size_t bytes = static_cast<std::size_t>(record.line.size()) * sizeof(QChar);
    if (bytes > half.lines.size() - half.used ||
        sizeof(LineHeader) > half.lines.size() - half.used - bytes)
        return;
    const LineHeader header{record.microseconds, static_cast<std::uint32_t>(record.level),
                            static_cast<std::uint32_t>(bytes)};
    char* const at = half.lines.data() + half.used;
    std::memcpy(at, &header, sizeof header);
    std::memcpy(at + sizeof header, record.line.constData(), bytes);
    // A line counts once it is whole.
    std::atomic_ref(half.used).store(half.used + sizeof header + bytes, std::memory_order_release);
}

void LogSpool::take() {
    const std::uint64_t turn = file_->half(file_->active).turn;
    file_->active = 1 - file_->active;
    file_->half(file_->active).turn = turn + 1;
}

void LogSpool::dropTaken() {
    std::atomic_ref(file_->half(1 - file_->active).used).store(0, std::memory_order_release);
}

void takeLeftLogLines(const QString& folder,
                      const std::function<bool(const LogRecord&, const LogOrigin&)>& write) {
    for (const QString& name : QDir(folder).entryList({u"log-*.spool"_s}, QDir::Files)) {
        const QByteArray path = QFile::encodeName(folder + u'/' + name);
        const Descriptor file(open(path.constData(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
        struct stat status {};
        if (!file.isOpen() || flock(file.get(), LOCK_EX | LOCK_NB) != 0 ||
            fstat(file.get(), &status) != 0 || status.st_nlink == 0)
            continue;
        const Mapped content = status.st_size == sizeof(Content) ? mapped(file) : nullptr;
        bool isWritten = true;
        if (content && content->magic == magic) {
            const auto pathBytes = std::min<std::uint64_t>(content->pathBytes, longestPath);
            const LogOrigin origin{
                content->processID,
                QString::fromUtf8(content->path.data(), static_cast<qsizetype>(pathBytes))};
            const std::size_t older = content->halves[0].turn < content->halves[1].turn ? 0 : 1;
            isWritten = takeLines(content->halves[older], origin, write) &&
                        takeLines(content->halves[1 - older], origin, write);
        }
        if (isWritten)
            unlink(path.constData());
    }
}

}  // namespace platform
