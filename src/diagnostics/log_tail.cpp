#include "diagnostics/log_tail.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <array>
#include <cerrno>

namespace diagnostics {

namespace {

/// Far longer than a line can be.
constexpr qsizetype longestLine = 1 << 20;

}  // namespace

LogTail::LogTail(const QString& folder) : folder_(folder), changes_(inotify_init1(IN_CLOEXEC)) {
    QDir().mkpath(folder);
    inotify_add_watch(changes_.get(), QFile::encodeName(folder).constData(),
                      IN_MODIFY | IN_CREATE | IN_MOVED_TO);
    const auto segments = platform::logSegments(folder_);
    if (segments.empty())
        return;
    open(segments.back());
    offset_ = file_.isOpen() ? lseek(file_.get(), 0, SEEK_END) : 0;
}

void LogTail::open(const platform::LogSegment& segment) {
    file_ = platform::Descriptor(::open(segment.path.constData(), O_RDONLY | O_CLOEXEC));
    number_ = segment.number;
    offset_ = 0;
    begun_.clear();
}

void LogTail::takeNew(const TakeLine& take) {
    takeRest(take);
    for (const platform::LogSegment& segment : platform::logSegments(folder_)) {
        if (segment.number <= number_)
            continue;
        // Another process may have written to the former one until it saw the new one.
        takeRest(take);
        open(segment);
        takeRest(take);
    }
}

void LogTail::takeRest(const TakeLine& take) {
    std::array<char, std::size_t{64} * 1024> bytes{};
    for (;;) {
        const ssize_t count = pread(file_.get(), bytes.data(), bytes.size(), offset_);
        if (count <= 0)
            return;
        offset_ += count;
        begun_.append(bytes.data(), count);
        const qsizetype end = begun_.lastIndexOf('\n') + 1;
        takeLines(QByteArrayView(begun_).first(end), take);
        begun_ = begun_.size() - end > longestLine ? QByteArray() : begun_.sliced(end);
    }
}

bool LogTail::wait(int output) {
    std::array<pollfd, 2> watched{{{changes_.get(), POLLIN, 0}, {output, 0, 0}}};
    if (poll(watched.data(), watched.size(), -1) < 0)
        return errno == EINTR;
    if (watched[1].revents != 0)
        return false;
    std::array<char, 4096> events{};
    return read(changes_.get(), events.data(), events.size()) > 0;
}

}  // namespace diagnostics
