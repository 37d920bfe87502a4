#include "diagnostics/log_command.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <QFile>
#include <QTemporaryDir>
#include <array>
#include <thread>

#include "diagnostics/log_lines.h"
#include "platform/base/log_record.h"
#include "platform/base/log_store.h"
#include "platform/files/descriptor.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using diagnostics::LogPredicate;
using diagnostics::LogRequest;
using platform::LogLevel;

constexpr std::int64_t minute = 60'000'000;

void store(const QString& folder, const QString& line, LogLevel level = LogLevel::Info,
           std::int64_t age = 0) {
    ASSERT_TRUE(platform::LogStore(folder).append(
        platform::encodedLogRecord({platform::logClock() - age, level, line})));
}

/// What the command writes.
QByteArray output(const QString& folder, const QStringList& arguments) {
    const LogRequest request = diagnostics::parsedLogArguments(arguments);
    EXPECT_EQ(request.problem, QString());
    const QTemporaryDir place;
    QFile file(place.filePath(u"out"_s));
    EXPECT_TRUE(file.open(QIODevice::ReadWrite));
    EXPECT_EQ(diagnostics::runLogCommand(request, folder, file.handle(), false), 0);
    file.seek(0);
    return file.readAll();
}

/// The messages in the order of the output.
QStringList messages(const QString& folder, const QStringList& options) {
    QStringList found;
    const QByteArray text =
        output(folder, QStringList{u"show"_s, u"--style"_s, u"json"_s} + options);
    for (const QByteArray& line : text.split('\n')) {
        if (line.startsWith("  \"eventMessage\" : \""))
            found.append(QString::fromUtf8(line.sliced(20).chopped(2)));
    }
    return found;
}

TEST(LogCommand, WritesEntriesInTheShapeThatIsCut) {
    const QTemporaryDir folder;
    EXPECT_EQ(output(folder.path(), {u"show"_s, u"--style"_s, u"json"_s}), "[\n]\n");
    store(folder.path(), u"[ILR] a \"b\"\nc"_s);
    store(folder.path(), u"d"_s, LogLevel::Error);
    const QList<QByteArray> lines =
        output(folder.path(), {u"show"_s, u"--style"_s, u"json"_s}).split('\n');
    ASSERT_EQ(lines.size(), 22);
    EXPECT_EQ(lines[0], "[{");
    EXPECT_TRUE(lines[1].startsWith("  \"timestamp\" : \"2")) << lines[1].toStdString();
    EXPECT_EQ(lines[2], "  \"eventType\" : \"logEvent\",");
    EXPECT_EQ(lines[3], "  \"messageType\" : \"Default\",");
    EXPECT_EQ(lines[5], "  \"category\" : \"ILR\",");
    EXPECT_EQ(lines[6], R"(  "eventMessage" : "[ILR] a \"b\"\nc",)");
    EXPECT_EQ(lines[7], "  \"processID\" : " + QByteArray::number(qint64(getpid())) + ',');
    EXPECT_EQ(lines[9], R"(  "senderImagePath" : "/Orlop/ILR")");
    EXPECT_EQ(lines[10], "},{");
    EXPECT_EQ(lines[20], "}]");
}

TEST(LogCommand, ShowsWhatWasAskedFor) {
    const QTemporaryDir folder;
    store(folder.path(), u"old"_s, LogLevel::Info, 40 * 24 * 60 * minute);
    store(folder.path(), u"hours"_s, LogLevel::Info, 150 * minute);
    store(folder.path(), u"deep"_s, LogLevel::Debug);
    store(folder.path(), u"bad"_s, LogLevel::Warning);
    struct Case {
        QStringList options, shown;
    };
    const std::vector<Case> cases{
        {{}, {u"hours"_s, u"bad"_s}},
        {{u"--info"_s}, {u"hours"_s, u"bad"_s}},
        {{u"--debug"_s}, {u"hours"_s, u"deep"_s, u"bad"_s}},
        {{u"--last"_s, u"1h"_s}, {u"bad"_s}},
        {{u"--last"_s, u"3h"_s}, {u"hours"_s, u"bad"_s}},
        {{u"--last"_s, u"1d"_s, u"--debug"_s}, {u"hours"_s, u"deep"_s, u"bad"_s}},
        {{u"--predicate"_s, uR"(messageType == "Error")"_s}, {u"bad"_s}},
        {{u"--predicate"_s, uR"(nothing CONTAINS "x")"_s}, {}},
    };
    for (const Case& one : cases)
        EXPECT_EQ(messages(folder.path(), one.options), one.shown)
            << one.options.join(u' ').toStdString();
}

TEST(LogCommand, ReadsPastALineThatWasCutShort) {
    const QTemporaryDir folder;
    const QByteArray whole = platform::encodedLogRecord(
        {platform::logClock(), LogLevel::Info, u"whole {\"timestamp\":\" inside"_s});
    QFile file(folder.filePath(u"Log.00000001.jsonl"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(whole.first(70) + whole + "noise\n{\"timestamp\":3}\n" + whole.first(30));
    file.close();
    EXPECT_EQ(messages(folder.path(), {}), QStringList({uR"(whole {\"timestamp\":\" inside)"_s}));
}

TEST(LogCommand, ShowsControlCharactersWithoutTheirEffect) {
    const QTemporaryDir folder;
    store(folder.path(), u"a\u001b]0;x\u0007\nb"_s);
    const QByteArray text = output(folder.path(), {u"show"_s});
    EXPECT_TRUE(text.endsWith("] a\xef\xbf\xbd]0;x\xef\xbf\xbd\n    b\n")) << text.toStdString();
}

TEST(LogCommand, RefusesWhatItDoesNotUnderstand) {
    const std::vector<QStringList> cases{
        {},
        {u"list"_s},
        {u"show"_s, u"--level"_s, u"debug"_s},
        {u"stream"_s, u"--last"_s, u"1h"_s},
        {u"stream"_s, u"--level"_s, u"loud"_s},
        {u"show"_s, u"--last"_s, u"h"_s},
        {u"show"_s, u"--last"_s, u"-1h"_s},
        {u"show"_s, u"--last"_s, u"5w"_s},
        {u"show"_s, u"--last"_s},
        {u"show"_s, u"--style"_s, u"xml"_s},
        {u"show"_s, u"--predicate"_s, u"a =="_s},
    };
    for (const QStringList& arguments : cases)
        EXPECT_FALSE(diagnostics::parsedLogArguments(arguments).problem.isEmpty())
            << arguments.join(u' ').toStdString();
}

TEST(LogCommand, StreamsWhatIsWrittenAcrossSegmentsUntilNobodyReads) {
    const QTemporaryDir folder;
    store(folder.path(), u"before"_s);
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    auto reading = std::make_unique<platform::Descriptor>(ends[0]);
    const platform::Descriptor writing(ends[1]);
    QByteArray text;
    const auto readUntil = [&](const QByteArray& end) {
        std::array<char, 4096> bytes{};
        while (!text.contains(end)) {
            const ssize_t count = read(reading->get(), bytes.data(), bytes.size());
            ASSERT_GT(count, 0);
            text.append(bytes.data(), count);
        }
    };
    std::thread stream([&] {
        EXPECT_EQ(diagnostics::runLogCommand(
                      diagnostics::parsedLogArguments({u"stream"_s, u"--style"_s, u"json"_s}),
                      folder.path(), writing.get(), false),
                  0);
    });
    readUntil("\n[");
    platform::LogStore small(folder.path(), {600, 1 << 20, 30});
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(small.append(platform::encodedLogRecord(
            {platform::logClock(), LogLevel::Info, u"line %1"_s.arg(i)})));
    readUntil("line 4\"");
    reading.reset();
    stream.join();
    EXPECT_GT(platform::logSegments(folder.path()).size(), 2U);
    EXPECT_FALSE(text.contains("before"));
    EXPECT_EQ(text.count("\"eventMessage\""), 5);
    EXPECT_TRUE(text.startsWith("Filtering the log data using \"\"\n[{"));
}

TEST(LogPredicate, DecidesLikeItReads) {
    struct Case {
        QByteArray text;
        bool isTrue;
    };
    const std::vector<Case> cases{
        {R"(p == "a/Orlop/b")", true},
        {R"(p != "a/Orlop/b")", false},
        {R"((p CONTAINS "/Orlop/") || (s CONTAINS "/Orlop/"))", true},
        {R"(p BEGINSWITH "a/" && p ENDSWITH "/b")", true},
        {R"(p CONTAINS "orlop")", false},
        {R"(p CONTAINS[c] "ORLOP")", true},
        {R"(!(p CONTAINS "x") && !s BEGINSWITH "x")", true},
        {R"(p == "x" && p == "x" || s == "quo\"te")", true},
        {R"(p == "x" && (p == "x" || s == "quo\"te"))", false},
        {R"(NOT p == "x" AND s == "quo\"te" OR p == "x")", true},
        {R"(missing == "")", true},
        {R"((eventType == "logEvent") && !(subsystem BEGINSWITH "com.apple") && ((processImagePath CONTAINS "/Orlop/") || (senderImagePath CONTAINS "/Orlop/")) && !(senderImagePath ENDSWITH "AggregateDictionary") && !(senderImagePath ENDSWITH "/CFNetwork"))",
         false},
    };
    for (const Case& one : cases) {
        const auto predicate = LogPredicate::parsed(one.text);
        ASSERT_TRUE(std::holds_alternative<LogPredicate>(predicate)) << one.text.toStdString();
        EXPECT_EQ(std::get<LogPredicate>(predicate).accepts([](QByteArrayView name) -> QByteArray {
            return name == "p" ? "a/Orlop/b" : name == "s" ? "quo\"te" : "";
        }),
                  one.isTrue)
            << one.text.toStdString();
    }
}

TEST(LogPredicate, SaysWhereItIsNotUnderstood) {
    struct Case {
        QByteArray text;
        qsizetype column;
    };
    const std::vector<Case> cases{
        {"", 1},
        {"a", 2},
        {"a == ", 6},
        {R"(a == "b)", 6},
        {R"(a ~ "b")", 3},
        {R"(("a"))", 2},
        {R"((a == "b")", 10},
        {R"(a == "b" c)", 10},
        {QByteArray(200, '(') + R"(a == "b")", 101},
        {QByteArray(70'000, ' '), 65'536},
    };
    for (const Case& one : cases) {
        const auto predicate = LogPredicate::parsed(one.text);
        ASSERT_TRUE(std::holds_alternative<LogPredicate::Problem>(predicate));
        EXPECT_EQ(std::get<LogPredicate::Problem>(predicate).column, one.column)
            << one.text.left(40).toStdString();
    }
}

}  // namespace
