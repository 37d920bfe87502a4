#include "diagnostics/integrated_log_reader.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <condition_variable>
#include <deque>
#include <thread>

#include "diagnostics/settings.h"
#include "platform/base/log_record.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"
#include "support/log_recorder.h"
#include "support/manual_clock.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using diagnostics::LogEntries;
using diagnostics::LogEntry;
using diagnostics::LogEntryHandler;
using diagnostics::LogRow;

constexpr std::int64_t hour = 3600LL * 1'000'000;

LogEntry entryAt(std::int64_t time, const QString& message, const QString& sender = u"orlop"_s) {
    LogEntry entry;
    entry.time = time;
    entry.timestamp = QString::fromLatin1(platform::logTimestamp(time));
    entry.eventMessage = message;
    entry.processImagePath = u"/usr/bin/orlop"_s;
    entry.senderImagePath = u"/Orlop/"_s + sender;
    return entry;
}

/// A log tool whose output the test writes. A read of the past stands until it is ended.
class FakeSource final : public diagnostics::LogSource {
public:
    struct Live final : Stream {
        explicit Live(FakeSource& of) : tool(of) {}
        ~Live() override { tool.live = {}; }
        FakeSource& tool;
    };

    bool isAvailable() const override { return isThere; }
    std::unique_ptr<Stream> start(const QStringList& arguments, LogEntryHandler handler) override {
        liveArguments = arguments;
        live = std::move(handler);
        ++liveStarts;
        return std::make_unique<Live>(*this);
    }
    void read(const QStringList& arguments, const LogEntryHandler& handler) override {
        std::unique_lock guard(lock);
        readArguments.push_back(arguments);
        changed.notify_all();
        for (;;) {
            changed.wait(guard, [this] { return !batches.empty(); });
            const LogEntries batch = std::move(batches.front());
            batches.pop_front();
            // An empty one is the tool's end.
            const bool isEnd = batch.empty();
            guard.unlock();
            const bool goesOn = !isEnd && handler(batch);
            guard.lock();
            ++answered;
            lastAnswer = goesOn;
            changed.notify_all();
            if (!goesOn)
                return;
        }
    }

    /// Waits until the reader has taken it.
    void give(LogEntries batch) {
        std::unique_lock guard(lock);
        const int before = answered;
        batches.push_back(std::move(batch));
        changed.notify_all();
        changed.wait(guard, [&] { return answered > before; });
    }
    QStringList waitForRead(std::size_t number) {
        std::unique_lock guard(lock);
        changed.wait(guard, [&] { return readArguments.size() >= number; });
        return readArguments[number - 1];
    }

    bool isThere = true;
    int liveStarts = 0;
    QStringList liveArguments;
    LogEntryHandler live;

    std::mutex lock;  ///< Guards all below.
    std::condition_variable changed;
    std::deque<LogEntries> batches;
    std::vector<QStringList> readArguments;
    int answered = 0;
    bool lastAnswer = true;
};

class LogReader : public testing::Test {
protected:
    LogReader() {
        reader.setDebugLoggingUserDefaultName(u"DQDebugLog"_s);
        reader.setDisplay({[this] { ++rowUpdates; }, {}, [this] { ++switchUpdates; }});
    }

    ~LogReader() override {
        reader.close();
        // Whatever still reads the past ends.
        const std::lock_guard guard(source.lock);
        source.batches.assign(4, {});
        source.changed.notify_all();
    }

    /// Ends the read of the past and lets the main thread hear of it.
    void endRead() {
        source.give({});
        for (int i = 0; i < 2000 && reader.isReadingArchive(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            loop.runDue();
        }
        ASSERT_FALSE(reader.isReadingArchive());
    }

    /// "M" for the marker.
    [[nodiscard]] QStringList shown() const {
        QStringList texts;
        for (const LogRow& row : reader.rows()) {
            texts.append(row.kind == LogRow::Kind::Marker
                             ? u"M"_s
                             : row.entry->eventMessage +
                                   (row.count > 1 ? u"*%1"_s.arg(row.count) : QString()));
        }
        return texts;
    }

    const QTemporaryDir folder;
    support::ManualClock clock;
    platform::RunLoop loop{clock};
    platform::UserDefaults defaults{folder.path(), u"test"_s};
    FakeSource source;
    int rowUpdates = 0, switchUpdates = 0;
    const std::int64_t now = platform::logClock();
    diagnostics::ILRIntegratedLogReader reader{{defaults, loop, source, u"Orlop"_s}};
};

TEST_F(LogReader, StaysClosedWithoutATool) {
    source.isThere = false;
    EXPECT_FALSE(reader.displayLog());
    EXPECT_EQ(source.liveStarts, 0);
}

TEST_F(LogReader, PutsThePastBeforeWhatIsLiveAndMarksWhereTheyMeet) {
    ASSERT_TRUE(reader.displayLog());
    EXPECT_EQ(shown(), QStringList({u"M"_s}));
    source.live({entryAt(now, u"live"_s)});
    source.give({entryAt(now - 2000, u"past 1"_s)});
    EXPECT_EQ(shown(), QStringList({u"past 1"_s, u"M"_s, u"live"_s}));
    source.give({entryAt(now - 1000, u"past 2"_s)});
    source.live({entryAt(now + 1000, u"live 2"_s)});
    EXPECT_EQ(shown(), QStringList({u"past 1"_s, u"past 2"_s, u"M"_s, u"live"_s, u"live 2"_s}));
    endRead();
    EXPECT_EQ(shown(), QStringList({u"past 1"_s, u"past 2"_s, u"live"_s, u"live 2"_s}));
    EXPECT_GT(rowUpdates, 0);
}

TEST_F(LogReader, AsksTheToolForWhatItsDelegateWants) {
    const QString ours =
        uR"((processImagePath CONTAINS "/Orlop/") || (senderImagePath CONTAINS "/Orlop/"))"_s;
    ASSERT_TRUE(reader.displayLog());
    EXPECT_EQ(source.liveArguments.mid(0, 3), QStringList({u"stream"_s, u"--style"_s, u"json"_s}));
    EXPECT_EQ(source.liveArguments.mid(5), QStringList({u"--level"_s, u"default"_s}));
    EXPECT_TRUE(source.liveArguments[4].contains(ours));
    EXPECT_TRUE(source.liveArguments[4].startsWith(u"(eventType == \"logEvent\") && "_s));
    EXPECT_EQ(source.waitForRead(1).mid(5), QStringList({u"--last"_s, u"1h"_s}));
    source.give({});
    diagnostics::ILRIntegratedLogReaderDelegate delegate;
    delegate.filteringLevel = [] { return 2; };
    reader.setDelegate(delegate);
    ASSERT_TRUE(reader.displayLog());
    EXPECT_EQ(source.liveStarts, 2);
    EXPECT_EQ(source.liveArguments.mid(3),
              QStringList({u"--predicate"_s, ours, u"--level"_s, u"debug"_s}));
    EXPECT_EQ(source.waitForRead(2).mid(5), QStringList({u"--debug"_s, u"--last"_s, u"1h"_s}));
    ASSERT_TRUE(reader.displayLog());
    EXPECT_EQ(source.liveStarts, 2);
}

TEST_F(LogReader, GoesFurtherBackInStepsAndKeepsWhatIsThere) {
    ASSERT_TRUE(reader.displayLog());
    source.give({entryAt(now, u"known"_s)});
    endRead();
    std::size_t reads = 1;
    for (const int days : {1, 7, 14, 21}) {
        reader.findEarlierResults();
        EXPECT_EQ(reader.numberOfDays(), days);
        EXPECT_EQ(source.waitForRead(++reads).last(), u"%1d"_s.arg(days));
        const QString earlier = u"%1 days"_s.arg(days);
        source.give({entryAt(now - days * 24 * hour, earlier),
                     entryAt(now - (days == 1 ? 0 : 1), u"known"_s)});
        // The last of the batch is there already: the tool is ended.
        if (days == 1) {
            EXPECT_FALSE(source.lastAnswer);
        }
        if (source.lastAnswer)
            source.give({});
        for (int i = 0; i < 2000 && reader.isReadingArchive(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            loop.runDue();
        }
        EXPECT_EQ(shown().first(), earlier);
    }
    EXPECT_EQ(source.liveStarts, 1);
    reader.clear();
    EXPECT_EQ(reader.numberOfDays(), -1);
    EXPECT_FALSE(reader.isReadingArchive());
    reader.findEarlierResults();
    EXPECT_EQ(reader.numberOfDays(), 0);
}

TEST_F(LogReader, ClearingEndsTheReadAndLetsLiveMessagesIn) {
    ASSERT_TRUE(reader.displayLog());
    source.waitForRead(1);
    reader.clear();
    source.give({entryAt(now, u"late"_s)});
    EXPECT_FALSE(source.lastAnswer);
    EXPECT_EQ(shown(), QStringList());
    source.live({entryAt(now, u"live"_s)});
    EXPECT_EQ(shown(), QStringList({u"live"_s}));
}

TEST_F(LogReader, AddsWhatFellBetweenThePastAndTheLive) {
    ASSERT_TRUE(reader.displayLog());
    source.live({entryAt(now, u"live"_s)});
    source.give({entryAt(now - 3000, u"past"_s)});
    endRead();
    clock.advance(3.0);
    loop.runDue();
    EXPECT_EQ(source.waitForRead(2).last(), u"2m"_s);
    source.give({entryAt(now - 3000, u"past"_s), entryAt(now - 2000, u"between"_s),
                 entryAt(now, u"live"_s)});
    source.give({});
    for (int i = 0; i < 2000 && shown().size() < 3; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(shown(), QStringList({u"past"_s, u"between"_s, u"live"_s}));
}

TEST_F(LogReader, ShowsEqualMessagesAsOneUnlessToldOtherwise) {
    ASSERT_TRUE(reader.displayLog());
    source.live({entryAt(now, u"a"_s), entryAt(now + 1, u""_s), entryAt(now + 2, u"a"_s),
                 entryAt(now + 3, u"a"_s, u"ILR"_s), entryAt(now + 4, u"a"_s, u"ILR"_s)});
    EXPECT_EQ(shown(), QStringList({u"M"_s, u"a*2"_s, u"a*2"_s}));
    source.give({entryAt(now - 1, u"a"_s)});
    EXPECT_EQ(shown(), QStringList({u"a"_s, u"M"_s, u"a*2"_s, u"a*2"_s}));
    endRead();
    EXPECT_EQ(shown(), QStringList({u"a*3"_s, u"a*2"_s}));
    diagnostics::ILRIntegratedLogReader other({defaults, loop, source, u"Orlop"_s});
    const int before = rowUpdates;
    other.toggleMessageCoalescing();
    loop.runDue();
    EXPECT_GT(rowUpdates, before);
    EXPECT_EQ(shown(), QStringList({u"a"_s, u"a"_s, u"a"_s, u"a"_s, u"a"_s}));
    reader.toggleMessageCoalescing();
    EXPECT_FALSE(defaults.hasValueForKey(diagnostics::settings::disableCoalescing.name()));
}

TEST_F(LogReader, TurnsDebugLoggingOnForAll) {
    EXPECT_TRUE(reader.canChangeDebugLogging());
    reader.toggleDebugLogging();
    EXPECT_TRUE(defaults.boolForKey(u"DQDebugLog"_s));
    EXPECT_GT(switchUpdates, 0);
    diagnostics::ILRIntegratedLogReaderDelegate stubborn;
    stubborn.isDebugLoggingEnabled = [] { return false; };
    reader.setDelegate(stubborn);
    EXPECT_FALSE(reader.canChangeDebugLogging());
    stubborn.setDebugLoggingEnabled = [](bool) {};
    reader.setDelegate(stubborn);
    const support::LogRecorder log;
    reader.toggleDebugLogging();
    EXPECT_EQ(log.lines(), QStringList({u"[ILR] unexpected debug logging state change"_s}));
}

TEST_F(LogReader, SavesDictionariesOfTextsAndNumbers) {
    const support::LogRecorder log;
    const QString path = folder.filePath(u"Log.plist"_s);
    EXPECT_FALSE(reader.save(path));
    EXPECT_EQ(log.lines(), QStringList({u"[ILR] cannot save log: no entries"_s}));
    ASSERT_TRUE(reader.displayLog());
    source.live({entryAt(now, u"a\nb"_s), entryAt(now + 1, u"c"_s)});
    ASSERT_TRUE(reader.save(path));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QVariantList saved = platform::readPropertyList(file.readAll()).value.toList();
    ASSERT_EQ(saved.size(), 2);
    EXPECT_EQ(saved[0].toMap()[u"eventMessage"_s], QVariant(u"a\nb"_s));
    EXPECT_FALSE(reader.save(folder.filePath(u"none/Log.plist"_s)));
    EXPECT_TRUE(log.lines().last().startsWith(u"[ILR] cannot save log: /"_s));
}

TEST(LogRowText, IsWordedAsItIsShown) {
    const QDate today(2026, 11, 22);
    const auto local = [](const QDate& day) {
        return QDateTime(day, QTime(14, 3, 2, 120)).toMSecsSinceEpoch() * 1000;
    };
    const auto text = [&](const LogEntry& entry, std::size_t count = 1, bool showsSender = true) {
        return diagnostics::logRowText(
                   {LogRow::Kind::Entry, std::make_shared<const LogEntry>(entry), count},
                   {today, showsSender, {u"[Debug] "_s}})
            .whole();
    };
    EXPECT_EQ(text(entryAt(local(today), u"a\nb"_s)), u"14:03:02.120 | orlop: a\u2028b"_s);
    EXPECT_EQ(text(entryAt(local(today), u"[Debug] a"_s, u"ILR"_s), 3),
              u"14:03:02.120 | orlop > ILR: a (×3)"_s);
    EXPECT_EQ(text(entryAt(local(today), u"a"_s), 1, false), u"14:03:02.120: a"_s);
    const QString yesterday = text(entryAt(local(today.addDays(-1)), u"a"_s));
    EXPECT_TRUE(yesterday.endsWith(u" — 14:03:02.120 | orlop: a"_s)) << yesterday.toStdString();
    EXPECT_TRUE(yesterday.contains(u"2026"_s));
    LogEntry timeless;
    timeless.eventMessage = u"a"_s;
    EXPECT_EQ(text(timeless), u"?: a"_s);
}

}  // namespace
