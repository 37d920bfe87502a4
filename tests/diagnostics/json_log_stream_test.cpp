#include "diagnostics/json_log_stream.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

#include "diagnostics/child_output.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using diagnostics::ChildOutput;
using diagnostics::JSONLogCutter;
using diagnostics::LogEntries;

/// What a cutter makes of its input.
struct Cut {
    QStringList messages;
    int batches = 0;

    JSONLogCutter cutter{[this](LogEntries entries) {
        ++batches;
        for (const auto& entry : entries)
            messages.append(entry.eventMessage);
        return true;
    }};
};

QByteArray entry(const QByteArray& message) {
    return "{\n  \"eventMessage\" : \"" + message + "\",\n  \"processID\" : 7\n}";
}

const QByteArray threeEntries = "Header {of} columns\n[" + entry("one") + ',' +
                                entry(R"(two {\n}\n} \"x\" [)") + ',' + entry("three") + "]\n";
const QStringList threeMessages{u"one"_s, u"two {\n}\n} \"x\" ["_s, u"three"_s};

TEST(JSONLogStream, CutsTheSameInPiecesOfAnySize) {
    for (qsizetype size = 1; size <= threeEntries.size(); ++size) {
        Cut cut;
        for (qsizetype at = 0; at < threeEntries.size(); at += size)
            cut.cutter.append(
                QByteArrayView(threeEntries).sliced(at, std::min(size, threeEntries.size() - at)));
        ASSERT_EQ(cut.messages, threeMessages) << size;
        EXPECT_EQ(cut.batches, size == 1 ? 3 : cut.batches);
    }
    Cut whole;
    whole.cutter.append(threeEntries);
    EXPECT_EQ(whole.batches, 1);
}

TEST(JSONLogStream, WaitsForAnEntryAndDeliversNoneOfAnEmptyList) {
    Cut cut;
    for (const QByteArray& part :
         {QByteArray("[\n]\n"), QByteArray("Header\n[{\n  \"eventMessage\" : \"a\"")})
        cut.cutter.append(part);
    EXPECT_EQ(cut.batches, 0);
    cut.cutter.append("\n}");
    EXPECT_EQ(cut.messages, QStringList({u"a"_s}));
}

TEST(JSONLogStream, KeepsABatchThatCannotBeParsed) {
    Cut cut;
    cut.cutter.append("\n[{\n  \"eventMessage\" : nonsense\n}");
    cut.cutter.append("," + entry("good"));
    EXPECT_EQ(cut.batches, 0);
}

TEST(JSONLogStream, AnswersWhatTheHandlerAnswers) {
    int calls = 0;
    JSONLogCutter cutter([&](const LogEntries&) { return ++calls > 1; });
    EXPECT_FALSE(cutter.append('[' + entry("a")));
    EXPECT_TRUE(cutter.append(',' + entry("b")));
    EXPECT_EQ(calls, 2);
}

TEST(JSONLogStream, ReadsEveryFieldOfAnEntry) {
    LogEntries found;
    JSONLogCutter cutter([&](LogEntries entries) {
        found = std::move(entries);
        return true;
    });
    cutter.append(R"([{
  "timestamp" : "2026-11-22 02:23:04.450001+0130",
  "eventMessage" : "\u00e9\ud83d\udc40\t\/\ud800",
  "messageType" : "Error",
  "category" : "ILR",
  "processID" : 12,
  "processImagePath" : "\/usr\/bin\/orlop",
  "senderImagePath" : "/Orlop/ILR",
  "other" : null
},{
  "timestamp" : "yesterday"
}])");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].time, 1795308784450001);
    EXPECT_EQ(found[0].eventMessage, u"é👀\t/\uFFFD"_s);
    EXPECT_EQ(found[0].processImagePath, u"/usr/bin/orlop"_s);
    EXPECT_EQ(found[0].processID, 12);
    EXPECT_EQ(found[0].propertyList().value(u"category"_s), QVariant(u"ILR"_s));
    EXPECT_FALSE(found[1].time);
    EXPECT_EQ(found[1].eventMessage, QString());
}

/// Gathers what a child writes, for a thread that waits.
struct Gathered {
    std::mutex lock;  ///< Guards text.
    std::condition_variable changed;
    QByteArray text;

    bool take(QByteArrayView bytes) {
        const std::lock_guard guard(lock);
        text += bytes;
        changed.notify_all();
        return true;
    }
    void waitFor(const QByteArray& wanted) {
        std::unique_lock guard(lock);
        EXPECT_TRUE(changed.wait_for(guard, std::chrono::seconds(20),
                                     [&] { return text.contains(wanted); }));
    }
};

TEST(ChildOutput, ReadsUntilTheEndAndEndsWhatDoesNotEnd) {
    Gathered all;
    const auto ends = ChildOutput::start(u"/bin/echo"_s, {u"a b"_s, u"é"_s},
                                         [&](QByteArrayView bytes) { return all.take(bytes); });
    ASSERT_TRUE(ends);
    ends->wait();
    EXPECT_FALSE(ends->isRunning());
    EXPECT_EQ(all.text, "a b \xc3\xa9\n");
    const auto stays = ChildOutput::start(u"/bin/sh"_s, {u"-c"_s, u"echo begun; exec sleep 1000"_s},
                                          [&](QByteArrayView bytes) { return all.take(bytes); });
    ASSERT_TRUE(stays);
    all.waitFor("begun");
    EXPECT_TRUE(stays->isRunning());
    stays->terminate();
    EXPECT_FALSE(stays->isRunning());
    EXPECT_FALSE(ChildOutput::start(u"/nowhere/tool"_s, {}, {}));
}

TEST(ChildOutput, EndsAProgramThatIsNotWantedAnyMore) {
    const auto child = ChildOutput::start(u"/bin/sh"_s, {u"-c"_s, u"while :; do echo x; done"_s},
                                          [](QByteArrayView) { return false; });
    ASSERT_TRUE(child);
    child->wait();
    EXPECT_FALSE(child->isRunning());
}

}  // namespace
