#include <QFile>
#include <algorithm>
#include <numeric>

#include "engine/acceleration/acceleration_settings.h"
#include "engine/acceleration/tail_plan.h"
#include "engine/settings.h"
#include "engine/transfer/resume_plan.h"
#include "engine_fixture.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;
using support::patternedBytes;
using support::Reply;
using State = RunningPart::State;

/// How long a file takes whose connections have these rates (bytes a second), in virtual time. A
/// connection that takes over a part keeps its rate.
double secondsFor(qint64 length, const std::vector<double>& rates, qint64 minimum) {
    constexpr double step = 0.01;
    struct Connection {
        std::size_t part;
        double rate, since, received = 0;
    };
    std::vector<RunningPart> parts{{0, 0}};
    for (const auto& fraction :
         splitIntoFractions(length, minimum, static_cast<qint64>(rates.size()), {})) {
        parts.back().length = fraction.start - parts.back().start;
        parts.push_back({fraction.start, fraction.length()});
    }
    std::vector<Connection> running;
    for (std::size_t index = 0; index < parts.size(); ++index)
        running.push_back({index, rates[index], 0});
    for (double now = 0;; now += step) {
        const std::size_t before = running.size();
        for (Connection& each : running) {
            RunningPart& part = parts[each.part];
            each.received =
                std::min(each.received + each.rate * step, static_cast<double>(part.length));
            part.received = static_cast<qint64>(each.received);
            part.state = part.left() > 0 ? State::Served : State::Done;
            part.rate = now - each.since > 0.25 ? std::optional(each.rate) : std::nullopt;
        }
        std::vector<double> freed;
        std::erase_if(running, [&](const Connection& each) {
            const bool isDone = parts[each.part].state == State::Done;
            if (isDone)
                freed.push_back(each.rate);
            return isDone;
        });
        for (const double rate : freed) {
            const auto split = splitSlowestPart(parts, rate, minimum);
            if (!split) {
                // A new connection in place of the slow one.
                for (Connection& each : running)
                    each.rate = crawls(parts, each.part, 0.5) ? rate : each.rate;
                continue;
            }
            RunningPart& slow = parts[split->part];
            parts.push_back({slow.start + split->offset, slow.length - split->offset});
            parts[split->part].length = split->offset;
            running.push_back({parts.size() - 1, rate, now});
        }
        if (running.empty() && before > 0)
            return now;
    }
}

TEST(SlowTailTest, SlowConnectionDoesNotHoldUpTheFile) {
    for (const qint64 length :
         {qint64{4'000'000}, qint64{8'000'000}, qint64{40'000'000}, qint64{2'000'000'000}}) {
        for (const std::size_t slow : {0u, 2u, 3u}) {
            for (const double factor : {1.0, 0.5, 0.1}) {
                const double usual = static_cast<double>(length) / 16;
                std::vector<double> rates(4, usual);
                rates[slow] *= factor;
                const double ideal =
                    static_cast<double>(length) / std::accumulate(rates.begin(), rates.end(), 0.0);
                EXPECT_LE(secondsFor(length, rates, 100'000), ideal * 1.15)
                    << length << " bytes, connection " << slow << " at " << factor;
            }
        }
    }
}

TEST(SlowTailTest, HalfIsTakenOfAnEqualAndNothingWhereItDoesNotPay) {
    const RunningPart done{0, 100, 100, 50.0, State::Done};
    const auto running = [](qint64 left, std::optional<double> rate) {
        return RunningPart{100, left + 60, 60, rate, State::Served};
    };
    struct Case {
        const char* what;
        RunningPart part;
        std::optional<qint64> offset;
    };
    const Case cases[] = {
        {"equally fast", running(1000, 50.0), 560},
        {"slower", running(1000, 12.5), 260},
        {"of unknown rate", running(1000, std::nullopt), 560},
        {"stopped", running(1600, 0.0), 73},
        {"less than the minimum", running(180, 50.0), std::nullopt},
        {"as good as there", running(1000, 5000.0), std::nullopt},
        {"not answered yet", {100, 1000, 0, std::nullopt, State::Running}, std::nullopt},
    };
    for (const Case& c : cases) {
        const auto split = splitSlowestPart({done, c.part}, 50.0, 100);
        EXPECT_EQ(split ? std::optional(split->offset) : std::nullopt, c.offset) << c.what;
    }
}

class SharedPartsTest : public TransferTest {
protected:
    SharedPartsTest() {
        AccelerationSettings(*defaults).setAccelerates(true);
        set(settings::accelerationMinimumFractionSize, qint64{20'000});
    }
    /// The range that begins at 0 or where another one is named stops after some bytes; nobody
    /// waits for any other.
    void stall(const std::string& first, std::size_t after) {
        server.handle("/file.bin", [this, first, after](const support::ReceivedRequest& request) {
            Reply served = reply(body);
            if (request.header("Range").value_or("") == first)
                served.stallAfter = after;
            return served;
        });
    }

    /// All but the one that stops have ended.
    [[nodiscard]] bool waitForTheOthers(DQDownload& download) {
        return main.waitUntil([&] {
            const auto parts = download.transfer().parts();
            return std::ranges::count(parts, State::Done, &RunningPart::state) ==
                   std::ssize(parts) - 1;
        });
    }

    const QByteArray body = patternedBytes(1'000'003);
};

TEST_F(SharedPartsTest, PartThatStopsIsTakenOverByThoseThatAreDone) {
    for (const std::string& slow : {std::string(), std::string("bytes=500003-750002")}) {
        SCOPED_TRACE(slow);
        stall(slow, 40'000);
        const auto download = add();
        download->startDownload();
        ASSERT_TRUE(waitForBytes(*download, 790'000));
        ASSERT_TRUE(waitForTheOthers(*download));
        main.advance(1);  // It may have been the last to be answered.
        // What is left for the one that stopped.
        ASSERT_TRUE(waitForBytes(*download, body.size() - 40'000));
        EXPECT_GT(download->transfer().parts().size(), 5u);
        EXPECT_EQ(download->transfer().figures().expected, body.size());
        server.release();
        ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
        EXPECT_EQ(contents(download->path()), body);
        EXPECT_EQ(downloadedNames(), QStringList{u"file.bin"_s});
        QFile::remove(download->path());
    }
    set(settings::accelerationSharesSlowParts, false);
    stall({}, 40'000);
    const auto download = add();
    download->startDownload();
    ASSERT_TRUE(waitForBytes(*download, 750'000));
    main.settle();
    EXPECT_EQ(download->transfer().parts().size(), 4u);
}

TEST_F(SharedPartsTest, ConnectionThatIsFreeLooksAgainForAPartToShare) {
    set(settings::accelerationSharesSlowParts, false);
    stall("bytes=500003-750002", 40'000);
    const auto download = add();
    download->startDownload();
    ASSERT_TRUE(waitForBytes(*download, 790'000));
    ASSERT_TRUE(waitForTheOthers(*download));
    main.advance(1);
    EXPECT_EQ(download->transfer().parts().size(), 4u);
    set(settings::accelerationSharesSlowParts, true);
    main.advance(1);
    ASSERT_TRUE(waitForBytes(*download, body.size() - 40'000));
    EXPECT_GT(download->transfer().parts().size(), 4u);
}

/// Also where what is recorded is as old as the first split.
TEST_F(SharedPartsTest, ResumeFindsThePartsAsTheyWereShared) {
    for (const bool isRecordOld : {false, true}) {
        SCOPED_TRACE(isRecordOld);
        stall({}, 40'000);
        auto download = add();
        download->startDownload();
        ASSERT_TRUE(waitForBytes(*download, 400'000));
        const QVariant old = archiveOfFractions(
            splitIntoFractions(body.size(), 20'000, 4, download->intermediateDownloadTargetPath()));
        ASSERT_TRUE(waitForBytes(*download, body.size() - 40'000));
        ASSERT_TRUE(waitForTheOthers(*download));
        const qint64 had = download->transfer().figures().total();
        download->pause();
        download = restarted(download);
        if (isRecordOld)
            download->userSettings().set(keys::accelerationWorkers, old);
        server.release();
        stall("none", 0);
        const auto before = static_cast<std::ptrdiff_t>(server.requests().size());
        run(download);
        ASSERT_EQ(download->status(), DQDownloadStatusDone);
        EXPECT_EQ(contents(download->path()), body);
        qint64 asked = 0;
        const auto requests = server.requests();
        for (auto request = requests.begin() + before; request != requests.end(); ++request) {
            qint64 first = 0, last = 0;
            ASSERT_EQ(
                sscanf(request->header("Range").value_or("").c_str(), "bytes=%lld-%lld",
                       reinterpret_cast<long long*>(&first), reinterpret_cast<long long*>(&last)),
                2);
            asked += last - first + 1;
        }
        EXPECT_EQ(asked, body.size() - had);
        QFile::remove(download->path());
    }
}

TEST_F(SharedPartsTest, ConnectionThatCrawlsIsReplacedOnce) {
    bool isFirst = true;
    server.handle("/file.bin", [&](const support::ReceivedRequest& request) {
        Reply served = reply(body);
        const std::string range = request.header("Range").value_or("");
        const bool isSlow = range.ends_with("-500002");
        served.stallAfter = isSlow ? 3'000u : std::exchange(isFirst, false) ? 150'000u : 100'000u;
        return served;
    });
    const auto download = add();
    download->startDownload();
    ASSERT_TRUE(waitForBytes(*download, 353'000));
    for (int second = 0; second < 30; ++second) {
        main.advance(1);
        static_cast<void>(main.waitUntil([&] { return server.requests().size() >= 5; },
                                         std::chrono::milliseconds(5)));
    }
    const auto ranges = requestedRanges();
    ASSERT_EQ(ranges.size(), 5u);
    EXPECT_EQ(ranges.back(), "bytes=253003-500002");
    ASSERT_TRUE(waitForBytes(*download, 356'000));
    serve(body);
    server.release();
    ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
    EXPECT_EQ(contents(download->path()), body);
}

}  // namespace
}  // namespace engine_test
