#include <QDateTime>
#include <QFile>
#include <atomic>

#include "engine/queue/host_limits.h"
#include "engine/settings.h"
#include "engine/workers/retry_after.h"
#include "engine_fixture.h"
#include "platform/base/utc.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;
using support::Reply;

TEST(RetryAfterTest, SecondsAndDatesAreUnderstoodWithinADay) {
    struct Case {
        const char* field;
        const char* date;
        std::optional<platform::Seconds> seconds;
    };
    const QDateTime now(QDate(2026, 11, 22), QTime(12, 0), platform::utc);
    for (const Case& c : {
             Case{"40", nullptr, 40},
             {" 40 ", nullptr, 40},
             {"0", nullptr, 1},
             {"99999999999999999999999999", nullptr, 86400},
             {"-5", nullptr, std::nullopt},
             {"4.5", nullptr, std::nullopt},
             {"soon", nullptr, std::nullopt},
             {"", nullptr, std::nullopt},
             {"Sun, 22 Nov 2026 12:01:30 GMT", nullptr, 90},
             {"Sunday, 22-Nov-26 12:01:30 GMT", nullptr, 90},
             {"Sun, 22 Nov 2026 11:00:00 GMT", nullptr, 1},
             // The server's clock is an hour ahead.
             {"Sun, 22 Nov 2026 13:01:30 GMT", "Sun, 22 Nov 2026 13:00:00 GMT", 90},
             {"Tue, 22 Nov 2033 12:00:00 GMT", nullptr, 86400},
         }) {
        WorkerResponse response;
        response.headers.emplace();
        response.headers->set(u"Retry-After"_s, QString::fromLatin1(c.field));
        if (c.date)
            response.headers->set(u"Date"_s, QString::fromLatin1(c.date));
        EXPECT_EQ(retryAfter(response, now), c.seconds) << c.field;
    }
    EXPECT_EQ(retryAfter({}, now), std::nullopt);
}

TEST(RetryAfterTest, PausesGrowAndDiffer) {
    platform::Seconds before = 0;
    int refusals = 0;
    for (const double middle : {1.0, 3.0, 9.0, 27.0, 60.0}) {
        const platform::Seconds pause = pauseAfterRefusal(refusals++);
        EXPECT_GE(pause, 0.75 * middle);
        EXPECT_LE(pause, 1.25 * middle);
        EXPECT_NE(pause, before);
        before = pause;
    }
}

/// Three of four are refused, and the last ends in another way.
TEST(HostLimitsTest, AnOutageIsNoLimit) {
    for (const bool isOver : {false, true}) {
        HostLimits limits;
        for (const qint64 others : {3, 2, 1})
            limits.noteRefusal(u"a.example"_s, others, 10);
        limits.pause(u"a.example"_s, 11);
        EXPECT_EQ(limits.connections(u"a.example"_s), std::nullopt);
        limits.noteService(u"a.example"_s, isOver ? 20 : 10.5);
        EXPECT_EQ(limits.connections(u"a.example"_s),
                  isOver ? std::nullopt : std::optional(qint64{1}));
        EXPECT_EQ(limits.remaining(u"a.example"_s, 10.5), 0);
    }
}

class BusyServerTest : public TransferTest {
protected:
    /// Queued, not past the queue.
    DownloadPtr queue(const QString& name = u"/file.bin"_s) {
        auto download = add(name);
        download->addToQueue();
        return download;
    }
    bool waitUntilRefused(const DownloadPtr& download) {
        return main.waitUntil(
            [&] { return download->status() == DQDownloadStatusQueued && download->wasRefused(); });
    }
    [[nodiscard]] platform::Seconds wait(const DownloadPtr& download) {
        const auto wait = owner.queue.admission().hostWait(*download);
        return wait ? wait->remaining : -1;
    }

    const QByteArray body = support::patternedBytes(600'000);
};

/// On a fresh request as on a resume.
TEST_F(BusyServerTest, IsAskedAgainWhenItSaysSo) {
    for (const int status : {429, 503}) {
        for (const bool resumes : {false, true}) {
            SCOPED_TRACE(std::to_string(status) + (resumes ? " resumed" : ""));
            const auto download = resumes ? pausedAfter(300'000, reply(body)) : add();
            server.serve("/file.bin", {.status = status, .headers = {{"Retry-After", "40"}}});
            download->addToQueue();
            ASSERT_TRUE(waitUntilRefused(download));
            EXPECT_EQ(wait(download), 40);
            main.advance(39);
            EXPECT_EQ(wait(download), 1);
            EXPECT_EQ(download->status(), DQDownloadStatusQueued);
            serve(body);
            main.advance(1);
            ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
            EXPECT_EQ(contents(download->path()), body);
            EXPECT_EQ(requestedRanges().back(), resumes ? "bytes=300000-" : "");
            QFile::remove(download->path());
            clearQueue();
        }
    }
}

TEST_F(BusyServerTest, GivesThePlaceToAnotherHost) {
    set(settings::numberOfConcurrentDownloads, qint64{1});
    server.serve("/file.bin", {.status = 503, .headers = {{"Retry-After", "40"}}});
    const auto refused = queue();
    // The server under another name.
    const auto other =
        owner.add(server.url(u"/other.bin"_s).replace(u"127.0.0.1"_s, u"localhost"_s), true);
    const auto same = queue(u"/other.bin"_s);
    serve(body, {}, u"/other.bin"_s);
    ASSERT_TRUE(waitUntilRefused(refused));
    ASSERT_TRUE(waitForStatus(*other, finishedStatuses));
    main.settle();
    EXPECT_EQ(same->status(), DQDownloadStatusQueued);
    EXPECT_EQ(wait(same), 40);
    serve(body);
    main.advance(40);
    ASSERT_TRUE(waitForStatus(*same, finishedStatuses));
    EXPECT_EQ(refused->status(), DQDownloadStatusDone);
}

/// As often as the setting says, and each time after a longer pause.
TEST_F(BusyServerTest, IsGivenUpInTheEnd) {
    for (const qint64 retries : {0, 1, 5}) {
        SCOPED_TRACE(retries);
        set(settings::retriesWhenServerIsBusy, retries);
        server.serve("/file.bin", {.status = 503});
        const auto download = pausedAfter(300'000, reply(body));
        server.serve("/file.bin", {.status = 503});
        const auto before = static_cast<qint64>(server.requests().size());
        download->addToQueue();
        std::vector<platform::Seconds> waits;
        for (;;) {
            ASSERT_TRUE(main.waitUntil([&] {
                return download->status() == DQDownloadStatusAborted || wait(download) > 0;
            }));
            if (download->status() == DQDownloadStatusAborted)
                break;
            waits.push_back(wait(download));
            main.advance(waits.back());
        }
        EXPECT_EQ(waits.size(), static_cast<std::size_t>(retries));
        EXPECT_TRUE(std::is_sorted(waits.begin(), waits.end()));
        EXPECT_EQ(static_cast<qint64>(server.requests().size()) - before, retries + 1);
        EXPECT_EQ(download->userSettings().value(keys::statusCode), 503);
        EXPECT_TRUE(download->holdsPartialData());
        download->removeAndMoveToTrashIfDone(false);
        waitForDisks();
    }
}

/// What came in between counts as served.
TEST_F(BusyServerTest, BytesBeginTheCountAnew) {
    set(settings::retriesWhenServerIsBusy, qint64{2});
    std::atomic<int> asked = 0;
    server.handle("/file.bin", [&](const support::ReceivedRequest&) {
        if (asked++ % 2 == 0)
            return Reply{.status = 503};
        Reply some = reply(body);
        some.cutAfter = 100'000;
        return some;
    });
    const auto download = queue();
    set(settings::autoResume, true);
    set(settings::autoResumeIntervalThreshold, 0.0);
    for (int step = 0; download->status() != DQDownloadStatusDone && step < 40; ++step) {
        ASSERT_TRUE(main.waitUntil([&] {
            return download->status() == DQDownloadStatusDone || wait(download) > 0 ||
                   download->status() == DQDownloadStatusPaused;
        }));
        main.advance(2);
    }
    EXPECT_EQ(download->status(), DQDownloadStatusDone);
    EXPECT_EQ(contents(download->path()), body);
}

TEST_F(BusyServerTest, UserNeedNotWait) {
    struct Case {
        const char* what;
        std::function<void(DQDownload&)> wish;
    };
    for (const Case& c : {Case{"start", [](DQDownload& download) { download.startDownload(); }},
                          Case{"pause and resume", [](DQDownload& download) {
                                   download.togglePause();
                                   download.togglePause();
                               }}}) {
        SCOPED_TRACE(c.what);
        server.serve("/file.bin", {.status = 429, .headers = {{"Retry-After", "4000"}}});
        const auto download = queue();
        ASSERT_TRUE(waitUntilRefused(download));
        serve(body);
        c.wish(*download);
        ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
        EXPECT_EQ(contents(download->path()), body);
        QFile::remove(download->path());
        clearQueue();
    }
}

/// A server that serves so many at once and refuses all others, as nginx does with limit_conn.
class LimitedServerTest : public BusyServerTest {
protected:
    void limit(std::size_t connections) {
        server.handleAll([this, connections](const support::ReceivedRequest&) {
            if (served >= connections)
                return Reply{.status = 503};
            ++served;
            Reply stalled = reply(body);
            stalled.stallAfter = 400'000;
            return stalled;
        });
    }
    /// All that are being served come to their ends.
    void finishServed() {
        served = 0;
        server.release();
    }

    std::atomic<std::size_t> served = 0;
};

TEST_F(LimitedServerTest, IsAskedForAsManyAsItServes) {
    // What was learned of a server is only ever lowered.
    for (const std::size_t connections : {3U, 2U, 1U}) {
        SCOPED_TRACE(connections);
        set(settings::numberOfConcurrentDownloads, qint64{4});
        set(settings::numberOfConcurrentDownloadsPerHost, qint64{4});
        limit(connections);
        Downloads files;
        for (int number = 0; number < 6; ++number)
            files.push_back(queue(u"/%1-%2.bin"_s.arg(connections).arg(number)));
        const auto isDone = [](const auto& file) { return file->status() == DQDownloadStatusDone; };
        const auto running = [&]() -> const Downloads& {
            return owner.queue.admission().downloadingDownloads();
        };
        for (std::size_t left = files.size(); left > 0; left -= connections) {
            ASSERT_TRUE(main.waitUntil([&] {
                return std::all_of(running().begin(), running().end(), [&](const auto& each) {
                    return each->transfer().figures().total() >= 400'000;
                });
            })) << left;
            ASSERT_EQ(running().size(), connections);
            const Downloads ending = running();
            finishServed();
            ASSERT_TRUE(
                main.waitUntil([&] { return std::all_of(ending.begin(), ending.end(), isDone); }));
            main.settle();
        }
        clearQueue();
        for (const QString& name : downloadedNames())
            QFile::remove(downloadedPath(name));
    }
}

}  // namespace
}  // namespace engine_test
