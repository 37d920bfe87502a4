#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <array>
#include <cstdio>
#include <mutex>

#include "platform/base/log.h"
#include "platform/files/descriptor.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// UTC with microseconds, as `yyyy-MM-dd HH:mm:ss.SSSSSSZ` reads it.
QString timestamp() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm parts{};
    gmtime_r(&now.tv_sec, &parts);
    std::array<char, 64> text{};
    const std::size_t length = strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
    std::snprintf(text.data() + length, text.size() - length, ".%06ld+0000", now.tv_nsec / 1000);
    return QString::fromLatin1(text.data());
}

QString messageType(LogLevel level) {
    switch (level) {
        case LogLevel::Debug:
            return u"Debug"_s;
        case LogLevel::Info:
            return u"Default"_s;
        case LogLevel::Warning:
            return u"Error"_s;
        case LogLevel::Error:
            return u"Fault"_s;
    }
    return u"Default"_s;
}

QByteArray encodedEntry(LogLevel level, const QString& line, const QString& program) {
    constexpr qsizetype longestMessage = 16 * 1024;
    const QString message =
        line.size() <= longestMessage ? line : line.first(longestMessage) + u'…';
    const QJsonObject entry{
        {u"timestamp"_s, timestamp()},
        {u"eventType"_s, u"logEvent"_s},
        {u"messageType"_s, messageType(level)},
        {u"eventMessage"_s, message},
        {u"processID"_s, getpid()},
        {u"processImagePath"_s, program},
        {u"senderImagePath"_s, u"Orlop"_s},
    };
    return QJsonDocument(entry).toJson(QJsonDocument::Compact) + '\n';
}

bool endsMidLine(const Descriptor& file, qint64 size) {
    char last = '\n';
    return size > 0 && pread(file.get(), &last, 1, size - 1) == 1 && last != '\n';
}

/// Several programs may append to one store: a line is one write, and whoever finds the file full
/// renames it, holding a lock on it.
class LogStore final : public LogSink {
public:
    LogStore(const QString& folder, qint64 maximumBytes)
        : folder_(folder),
          olderPath_(QFile::encodeName(logStoreFiles(folder).first())),
          path_(QFile::encodeName(logStoreFiles(folder).last())),
          maximumBytes_(maximumBytes) {}

    void write(LogLevel level, const QString& line) override {
        const QByteArray entry = encodedEntry(level, line, program_);
        const std::lock_guard guard(lock_);
        struct stat current {};
        if (!openCurrent(current))
            return;
        if (current.st_size > 0 && current.st_size + entry.size() > maximumBytes_) {
            rotate();
            if (!openCurrent(current))
                return;
        }
        append(entry);
    }

private:
    /// Makes sure that the open file is the one at the path: another program may have rotated it.
    bool openCurrent(struct stat& current) {
        struct stat atPath {};
        if (file_.isOpen() && fstat(file_.get(), &current) == 0 &&
            stat(path_.constData(), &atPath) == 0 && atPath.st_ino == current.st_ino &&
            atPath.st_dev == current.st_dev)
            return true;
        if (!QDir().mkpath(folder_))
            return false;
        constexpr int flags = O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW;
        file_ = Descriptor(open(path_.constData(), flags, S_IRUSR | S_IWUSR));
        if (!file_.isOpen() || fstat(file_.get(), &current) != 0)
            return false;
        needsLineBreak_ = endsMidLine(file_, current.st_size);
        return true;
    }

    void rotate() {
        flock(file_.get(), LOCK_EX);
        struct stat atPath {};
        struct stat current {};
        if (stat(path_.constData(), &atPath) == 0 && fstat(file_.get(), &current) == 0 &&
            atPath.st_ino == current.st_ino)
            rename(path_.constData(), olderPath_.constData());
        file_.close();
    }

    void append(QByteArray entry) {
        if (needsLineBreak_)
            entry.prepend('\n');
        needsLineBreak_ = ::write(file_.get(), entry.constData(),
                                  static_cast<std::size_t>(entry.size())) != entry.size();
    }

    const QString folder_;
    const QString program_ = QFile::symLinkTarget(u"/proc/self/exe"_s);
    const QByteArray olderPath_, path_;
    const qint64 maximumBytes_;
    std::mutex lock_;  ///< Guards all that follows.
    Descriptor file_;
    bool needsLineBreak_ = false;
};

}  // namespace

QStringList logStoreFiles(const QString& folder) {
    return {folder + u"/Log.old.jsonl"_s, folder + u"/Log.jsonl"_s};
}

std::shared_ptr<LogSink> makeLogStore(const QString& folder, qint64 maximumBytes) {
    return std::make_shared<LogStore>(folder, maximumBytes);
}

}  // namespace platform
