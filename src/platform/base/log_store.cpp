#include "platform/base/log_store.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <algorithm>
#include <array>
#include <cstdio>

#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

constexpr qint64 secondsOfDay = 24LL * 60 * 60;
constexpr qint64 lengthOfDay = 10;                             // yyyy-MM-dd
constexpr qint64 dayOffset = sizeof("{\"timestamp\":\"") - 1;  // with which each line begins

QByteArray dayOf(const QByteArray& line) {
    return line.mid(dayOffset, lengthOfDay);
}

QByteArray dayOfFirstLine(const Descriptor& file) {
    std::array<char, lengthOfDay> day{};
    const bool isThere = pread(file.get(), day.data(), day.size(), dayOffset) == lengthOfDay;
    return isThere ? QByteArray(day.data(), lengthOfDay) : QByteArray();
}

bool endsMidLine(const Descriptor& file, qint64 size) {
    char last = '\n';
    return size > 0 && pread(file.get(), &last, 1, size - 1) == 1 && last != '\n';
}

QByteArray segmentPath(const QString& folder, qint64 number) {
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "/Log.%08lld.jsonl", static_cast<long long>(number));
    return QFile::encodeName(folder) + name.data();
}

}  // namespace

QString logStoreFolder() {
    return userStateFolder() + u"/Log"_s;
}

std::vector<LogSegment> logSegments(const QString& folder) {
    std::vector<LogSegment> segments;
    for (const QString& name : QDir(folder).entryList({u"Log.*.jsonl"_s}, QDir::Files)) {
        const qint64 number = name.section(u'.', 1, 1).toLongLong();
        const QByteArray path = segmentPath(QDir::cleanPath(folder), number);
        struct stat file {};
        if (number > 0 && path.endsWith(QFile::encodeName(name)) &&
            stat(path.constData(), &file) == 0)
            segments.push_back({number, path, file.st_size, file.st_mtim.tv_sec});
    }
    std::sort(segments.begin(), segments.end(),
              [](const auto& a, const auto& b) { return a.number < b.number; });
    return segments;
}

LogStore::LogStore(const QString& folder, const LogStoreBounds& bounds)
    : folder_(QDir::cleanPath(folder)), bounds_(bounds) {}

QByteArray LogStore::pathOf(qint64 number) const {
    return segmentPath(folder_, number);
}

bool LogStore::append(const QByteArray& line) {
    if (!openFor(line))
        return false;
    struct stat now {};
    if (fstat(file_.get(), &now) != 0)
        return false;
    // Another process, or an earlier run, may have ended in the middle of its line.
    const bool isCut = now.st_size != end_ && endsMidLine(file_, now.st_size);
    const QByteArray written = isCut ? '\n' + line : line;
    const ssize_t count =
        ::write(file_.get(), written.constData(), static_cast<std::size_t>(written.size()));
    if (day_.isEmpty())
        day_ = dayOf(line);
    end_ = count == written.size() ? now.st_size + count : -1;
    return count == written.size();
}

/// Opens the segment that the line belongs into, unless it is open already.
bool LogStore::openFor(const QByteArray& line) {
    struct stat open {};
    const bool isOpen = file_.isOpen() && fstat(file_.get(), &open) == 0 && open.st_nlink > 0;
    if (!isOpen || hasSuccessor()) {
        if (!QDir().mkpath(folder_))
            return false;
        const std::vector<LogSegment> segments = logSegments(folder_);
        const qint64 newest = segments.empty() ? 1 : segments.back().number;
        if (!openSegment(newest) || fstat(file_.get(), &open) != 0)
            return false;
        removeOld();
    }
    if (!isOver(line, open.st_size))
        return true;
    if (!openSegment(number_ + 1))
        return false;
    removeOld();
    return true;
}

bool LogStore::openSegment(qint64 number) {
    constexpr int flags = O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW;
    file_ = Descriptor(open(pathOf(number).constData(), flags, S_IRUSR | S_IWUSR));
    number_ = number;
    day_ = file_.isOpen() ? dayOfFirstLine(file_) : QByteArray();
    end_ = -1;
    return file_.isOpen();
}

bool LogStore::isOver(const QByteArray& line, qint64 size) const {
    if (size == 0)
        return false;
    return size + line.size() > bounds_.segmentBytes || (!day_.isEmpty() && day_ != dayOf(line));
}

bool LogStore::hasSuccessor() const {
    return access(pathOf(number_ + 1).constData(), F_OK) == 0;
}

/// So that what is left never takes more than the store may, the open segment being full.
void LogStore::removeOld() const {
    const std::vector<LogSegment> segments = logSegments(folder_);
    const qint64 oldest = ::time(nullptr) - bounds_.days * secondsOfDay;
    qint64 room = bounds_.totalBytes - bounds_.segmentBytes;
    for (auto segment = segments.rbegin(); segment != segments.rend(); ++segment) {
        if (segment->number >= number_)
            continue;
        room -= segment->bytes;
        if (room < 0 || segment->changed < oldest)
            unlink(segment->path.constData());
    }
}

}  // namespace platform
