#include "platform/base/log.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <chrono>
#include <future>
#include <thread>

#include "platform/base/log_redaction.h"
#include "platform/base/log_store.h"
#include "platform/base/log_writer.h"
#include "support/log_recorder.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using platform::LogLevel;
using platform::LogRecord;
using platform::LogStore;
using platform::LogStoreBounds;

QByteArray contents(const QString& folder) {
    QByteArray all;
    for (const platform::LogSegment& segment : platform::logSegments(folder)) {
        QFile file(QFile::decodeName(segment.path));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        all += file.readAll();
    }
    return all;
}

/// Of the lines that are whole.
QList<QJsonObject> storedEntries(const QString& folder) {
    QList<QJsonObject> entries;
    for (const QByteArray& line : contents(folder).split('\n')) {
        const QJsonObject entry = QJsonDocument::fromJson(line).object();
        if (!entry.isEmpty())
            entries.append(entry);
    }
    return entries;
}

QStringList storedMessages(const QString& folder) {
    QStringList messages;
    for (const QJsonObject& entry : storedEntries(folder))
        messages.append(entry[u"eventMessage"_s].toString());
    return messages;
}

QByteArray encoded(const QString& line, std::int64_t time = platform::logClock()) {
    return platform::encodedLogRecord({time, LogLevel::Info, line});
}

TEST(Log, StoresLinesAsTheReaderTakesThem) {
    const QTemporaryDir folder;
    const QString store = folder.filePath(u"state/logs"_s);
    const std::int64_t noon = 1'700'000'000'000'042;
    ASSERT_TRUE(LogStore(store).append(platform::encodedLogRecord(
        {noon, LogLevel::Warning, u"[ILR] two\nlines \u001b[31m é \"\\"_s})));
    const QList<QJsonObject> entries = storedEntries(store);
    ASSERT_EQ(entries.size(), 1);
    const QJsonObject& entry = entries[0];
    EXPECT_EQ(entry[u"timestamp"_s].toString(), u"2023-11-14 22:13:20.000042+0000"_s);
    EXPECT_EQ(entry[u"eventMessage"_s].toString(), u"[ILR] two\nlines \u001b[31m é \"\\"_s);
    EXPECT_EQ(entry[u"messageType"_s].toString(), u"Error"_s);
    EXPECT_EQ(entry[u"category"_s].toString(), u"ILR"_s);
    EXPECT_EQ(entry[u"senderImagePath"_s].toString(), u"/Orlop/ILR"_s);
    EXPECT_EQ(entry[u"processImagePath"_s].toString(), QFile::symLinkTarget(u"/proc/self/exe"_s));
    EXPECT_EQ(entry[u"processID"_s].toInteger(), getpid());
    EXPECT_EQ(QFile::permissions(QFile::decodeName(platform::logSegments(store)[0].path)) &
                  (QFile::ReadGroup | QFile::ReadOther),
              QFile::Permissions());
}

TEST(Log, StaysBoundedAndKeepsTheLatestLinesWithTwoWriters) {
    const QTemporaryDir folder;
    const LogStoreBounds bounds{4000, 20'000, 30};
    LogStore one(folder.path(), bounds), two(folder.path(), bounds);
    qint64 most = 0;
    for (int i = 0; i < 500; ++i) {
        ASSERT_TRUE((i % 3 == 0 ? one : two).append(encoded(QString::number(i))));
        most = std::max<qint64>(most, contents(folder.path()).size());
    }
    EXPECT_LE(most, bounds.totalBytes);
    EXPECT_GT(most, bounds.totalBytes - 2 * bounds.segmentBytes);
    const QStringList messages = storedMessages(folder.path());
    for (qsizetype i = 0; i < messages.size(); ++i)
        EXPECT_EQ(messages[i].toInt(), 500 - messages.size() + i);
}

TEST(Log, BeginsASegmentEachDayAndDropsWhatIsAMonthOld) {
    const QTemporaryDir folder;
    constexpr std::int64_t day = 86'400'000'000;
    const std::int64_t now = platform::logClock();
    LogStore store(folder.path());
    ASSERT_TRUE(store.append(encoded(u"old"_s, now - 32 * day)));
    const QByteArray old = platform::logSegments(folder.path())[0].path;
    ASSERT_TRUE(store.append(encoded(u"yesterday"_s, now - day)));
    EXPECT_EQ(storedMessages(folder.path()), QStringList({u"old"_s, u"yesterday"_s}));
    const timespec longAgo{static_cast<time_t>((now - 32 * day) / 1'000'000), 0};
    const timespec times[2] = {longAgo, longAgo};
    ASSERT_EQ(utimensat(AT_FDCWD, old.constData(), times, 0), 0);
    ASSERT_TRUE(store.append(encoded(u"today"_s, now)));
    EXPECT_EQ(storedMessages(folder.path()), QStringList({u"yesterday"_s, u"today"_s}));
}

TEST(Log, ALineCutAnywhereSpoilsNeitherThoseBeforeNorTheNext) {
    const QByteArray whole = encoded(u"first"_s), cut = encoded(u"cut \"short\" é"_s);
    for (qsizetype length = 0; length < cut.size(); ++length) {
        const QTemporaryDir folder;
        QFile torn(folder.filePath(u"Log.00000001.jsonl"_s));
        ASSERT_TRUE(torn.open(QIODevice::WriteOnly));
        torn.write(whole + cut.first(length));
        torn.close();
        ASSERT_TRUE(LogStore(folder.path()).append(encoded(u"next"_s)));
        QStringList wanted{u"first"_s, u"next"_s};
        if (length == cut.size() - 1)
            wanted.insert(1, u"cut \"short\" é"_s);
        ASSERT_EQ(storedMessages(folder.path()), wanted) << length;
    }
}

TEST(Log, SeesThatAnotherProcessWasCutShort) {
    const QTemporaryDir folder;
    LogStore store(folder.path());
    ASSERT_TRUE(store.append(encoded(u"ours"_s)));
    QFile torn(QFile::decodeName(platform::logSegments(folder.path())[0].path));
    ASSERT_TRUE(torn.open(QIODevice::Append));
    torn.write("{\"timestamp\":\"20");
    torn.close();
    ASSERT_TRUE(store.append(encoded(u"ours again"_s)));
    EXPECT_EQ(storedMessages(folder.path()), QStringList({u"ours"_s, u"ours again"_s}));
}

TEST(Log, GoesOnWhenItsFilesAreTakenAway) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"store"_s);
    LogStore store(path);
    ASSERT_TRUE(store.append(encoded(u"gone"_s)));
    ASSERT_TRUE(QDir(path).removeRecursively());
    ASSERT_TRUE(store.append(encoded(u"here"_s)));
    EXPECT_EQ(storedMessages(path), QStringList({u"here"_s}));
}

/// Writes numbered lines, several to a segment, until it is killed.
[[noreturn]] void writeUntilKilled(const QString& folder, int writer) {
    LogStore store(folder, {2000, 1 << 20, 30});
    for (int i = 0;; ++i) {
        if (!store.append(encoded(u"%1 %2"_s.arg(writer).arg(i))))
            _exit(1);
    }
}

TEST(Log, TwoWritersKilledAtAnyMomentLoseNoLineThatStandsBeforeAnother) {
    for (int round = 0; round < 20; ++round) {
        const QTemporaryDir folder;
        std::array<pid_t, 2> writers{};
        for (int writer = 0; writer < 2; ++writer) {
            writers[static_cast<std::size_t>(writer)] = fork();
            if (writers[static_cast<std::size_t>(writer)] == 0)
                writeUntilKilled(folder.path(), writer);
        }
        while (storedEntries(folder.path()).size() < 50 + 3 * round)
            std::this_thread::yield();
        for (const pid_t writer : writers)
            kill(writer, SIGKILL);
        for (const pid_t writer : writers) {
            int status = 0;
            ASSERT_EQ(waitpid(writer, &status, 0), writer);
            ASSERT_TRUE(WIFSIGNALED(status));
        }
        ASSERT_TRUE(LogStore(folder.path()).append(encoded(u"2 0"_s)));
        std::array<int, 3> next{};
        for (const QString& message : storedMessages(folder.path()))
            ASSERT_EQ(message.section(u' ', 1).toInt(),
                      next[message.section(u' ', 0, 0).toULong()]++);
        EXPECT_EQ(next[2], 1);
    }
}

TEST(LogWriter, WritesAllInOrderBeforeItEnds) {
    QStringList written;
    {
        platform::LogWriter writer(
            {[&](const LogRecord& record) { written.append(record.line); }, nullptr});
        for (int i = 0; i < 1000; ++i)
            writer.write(LogLevel::Info, QString::number(i));
    }
    ASSERT_EQ(written.size(), 1000);
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(written[i].toInt(), i);
}

/// Logs numbered lines beside a disk that never answers, and says through `done` when it has.
[[noreturn]] void logUntilKilled(const QString& folder, int count, int done) {
    platform::LogWriter writer({[](const LogRecord&) { pause(); }},
                               platform::LogSpool::make(folder));
    for (int i = 0; i < count; ++i)
        writer.write(LogLevel::Warning, u"line %1 é"_s.arg(i));
    if (::write(done, "x", 1) != 1)
        _exit(1);
    for (;;)
        pause();
}

QStringList leftLines(const QString& folder, qint64 processID = getpid()) {
    QStringList lines;
    platform::takeLeftLogLines(folder, [&](const LogRecord& record, const platform::LogOrigin& by) {
        EXPECT_EQ(by.processID, processID);
        EXPECT_EQ(record.level, LogLevel::Warning);
        EXPECT_EQ(by.path, platform::ownLogOrigin().path);
        lines.append(record.line);
        return true;
    });
    return lines;
}

TEST(LogSpool, KeepsTheLinesOfAKilledProcessThatNoDiskHasTaken) {
    constexpr int count = 300;
    const QTemporaryDir folder;
    std::array<int, 2> done{};
    ASSERT_EQ(pipe(done.data()), 0);
    const pid_t process = fork();
    if (process == 0)
        logUntilKilled(folder.path(), count, done[1]);
    char byte = 0;
    ASSERT_EQ(read(done[0], &byte, 1), 1);
    EXPECT_EQ(leftLines(folder.path()), QStringList()) << "its owner lives";
    kill(process, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    const QStringList lines = leftLines(folder.path(), process);
    ASSERT_EQ(lines.size(), count);
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(lines[i], u"line %1 é"_s.arg(i));
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
    close(done[0]);
    close(done[1]);
}

TEST(LogSpool, HoldsWhatHasRoomAndNothingThatIsWritten) {
    const QTemporaryDir folder;
    const auto name = u"/log-%1.spool"_s.arg(getpid());
    const auto record = [](const QString& line) { return LogRecord{1, LogLevel::Warning, line}; };
    {
        const auto spool = platform::LogSpool::make(folder.path());
        ASSERT_TRUE(spool);
        EXPECT_FALSE(platform::LogSpool::make(folder.path())) << "there is one";
        spool->add(record(u"written"_s));
        spool->take();
        spool->add(record(QString(platform::LogSpool::bytesOfHalf, u'x')));
        spool->add(record(u"first"_s));
        spool->dropTaken();
        spool->take();
        spool->add(record(u"second"_s));
    }
    QFile file(folder.path() + name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QByteArray damaged = file.readAll();
    EXPECT_EQ(leftLines(folder.path()), QStringList({u"first"_s, u"second"_s}));
    EXPECT_FALSE(file.exists());
    // Lengths that lie, in both halves.
    const QByteArray text(reinterpret_cast<const char*>(u"second"), 12);
    for (const QByteArray& lie : {QByteArray("\xff\xff\xff\xff"), QByteArray("\xff\x01\0\0", 4)}) {
        damaged.replace(damaged.indexOf(text) - 4, 4, lie);
        QFile torn(folder.path() + name);
        ASSERT_TRUE(torn.open(QIODevice::WriteOnly));
        torn.write(damaged);
        torn.close();
        EXPECT_EQ(leftLines(folder.path()), QStringList({u"first"_s}));
    }
    { const auto spool = platform::LogSpool::make(folder.path()); }
    EXPECT_TRUE(QDir(folder.path()).isEmpty()) << "nothing was left";
}

/// A disk that does not answer until it is let.
struct StuckDisk {
    std::promise<void> answer;
    std::shared_future<void> answered{answer.get_future()};
    QStringList written;
};

TEST(LogWriter, AStuckDiskHoldsUpNobodyAndNotTheEnd) {
    auto disk = std::make_shared<StuckDisk>();
    auto writer = std::make_unique<platform::LogWriter>(
        std::vector<platform::LogOutput>{[disk](const LogRecord&) { disk->answered.wait(); }});
    const auto begin = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < 3 * platform::LogWriter::mostWaiting; ++i)
        writer->write(LogLevel::Info, u"line"_s);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    writer.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(8));
    disk->answer.set_value();
}

TEST(LogWriter, SaysHowManyLinesADiskDidNotTake) {
    constexpr int excess = 7;
    auto disk = std::make_shared<StuckDisk>();
    std::promise<void> first;
    {
        platform::LogWriter writer({[&](const LogRecord& record) {
            if (record.line == u"first")
                first.set_value();
            disk->answered.wait();
            disk->written.append(record.line);
        }});
        writer.write(LogLevel::Info, u"first"_s);
        first.get_future().wait();
        for (std::size_t i = 0; i < platform::LogWriter::mostWaiting + excess; ++i)
            writer.write(LogLevel::Info, u"line"_s);
        disk->answer.set_value();
    }
    ASSERT_EQ(disk->written.size(), 2 + qsizetype(platform::LogWriter::mostWaiting));
    EXPECT_EQ(disk->written.last(), u"7 lines were not written: the disk does not keep up"_s);
}

TEST(Log, LeavesPasswordsTokensCookiesAndAuthorisationOut) {
    struct Case {
        QString line, shown;
    };
    const std::vector<Case> cases{
        {u"<http://me:se:cr@t@host:8/a@b> and ftp://:x@h ://a:b@ http://me@host:80/?c:d@e"_s,
         u"<http://...@host:8/a@b> and ftp://...@h ://...@ http://...@host:80/?c:d@e"_s},
        {u"GET\nCookie: a=b; c=d\nHost: x"_s, u"GET\nCookie: ...\nHost: x"_s},
        {u"set-cookie : id=1\r\nAuthorization:Basic Zm9v"_s,
         u"set-cookie : ...\nAuthorization:..."_s},
        {uR"({"Proxy-Authorization" = "Digest \"x\" y"; Age = 5})"_s,
         u"{\"Proxy-Authorization\" = ...; Age = 5}"_s},
        {u"WWW-Authenticate: Basic realm=x, my-cookie: y, cookies: 3"_s,
         u"WWW-Authenticate: Basic realm=x, my-cookie: y, cookies: 3"_s},
        {u"cookie:"_s, u"cookie:..."_s},
    };
    const support::LogRecorder log;
    for (const Case& one : cases) {
        platform::log(one.line);
        EXPECT_EQ(log.lines().last(), one.shown);
    }
}

TEST(Log, AsksForADebugLineOnlyWhereItIsWanted) {
    int asked = 0;
    const auto line = [&] { return ++asked, u"deep"_s; };
    platform::debugLog(line);
    EXPECT_EQ(asked, 0);
    const support::LogRecorder log;
    platform::debugLog(line);
    EXPECT_EQ(log.lines(), QStringList({u"[Debug] deep"_s}));
}

}  // namespace
