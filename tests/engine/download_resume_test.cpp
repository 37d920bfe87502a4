#include <sys/xattr.h>
#include <QFile>

#include "engine/settings.h"
#include "engine_fixture.h"
#include "http/http_request.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;
using support::patternedBytes;
using support::Reply;

constexpr qint64 half = 300'000;
constexpr qint64 whole = 600'000;

class ResumeTest : public TransferTest {
protected:
    DownloadPtr paused() { return pausedAfter(half, reply(body)); }

    const QByteArray body = patternedBytes(whole);
    const QString partial = downloadedPath(u"file.bin.orlop/file.bin"_s);
};

TEST_F(ResumeTest, GoesOnFromWhatIsThereOfTheFile) {
    const auto losePower = [this] {
        waitForDisks();
        ASSERT_TRUE(platform::extendedAttribute(partial, u"user.orlop.synced"_s));
        write(partial, body.first(100'000) + QByteArray(half - 100'000, '\0'));
        ASSERT_TRUE(
            platform::setExtendedAttribute(partial, u"user.orlop.synced"_s, "another-boot 100000"));
    };
    const auto nothing = std::nullopt;
    struct Case {
        const char* what;
        std::function<void()> meanwhile;
        /// Nothing: there is no request.
        std::optional<std::string> range;
        QString logged;
    };
    const Case cases[] = {
        {"half of it", [] {}, "bytes=300000-", {}},
        {"nothing any more", [this] { QFile::remove(partial); }, "",
         u"intermediate download file vanished"_s},
        {"more than there can be", [this] { write(partial, body + "x"); }, "", {}},
        {"all of it, but it was not moved", [this] { write(partial, body); }, nothing, {}},
        {"less than was written before the power failed", losePower, "bytes=100000-", {}},
    };
    for (const Case& c : cases) {
        for (const bool restarts : {false, true}) {
            SCOPED_TRACE(c.what);
            SCOPED_TRACE(restarts);
            auto download = paused();
            if (restarts)
                download = restarted(download);
            EXPECT_TRUE(download->userSettings().contains(keys::responseURL));
            EXPECT_FALSE(download->isInterrupted());
            EXPECT_EQ(download->downloadCompletionFraction(), 0);
            c.meanwhile();
            const auto requests = server.requests().size();
            run(download);
            EXPECT_EQ(contents(download->path()), body);
            ASSERT_EQ(server.requests().size(), requests + (c.range ? 1 : 0));
            EXPECT_EQ(requestedRanges().back(), c.range.value_or(""));
            if (c.range && !c.range->empty()) {
                EXPECT_EQ(server.requests().back().header("If-Range"),
                          reply(body).headers[0].second);
            }
            EXPECT_TRUE(c.logged.isEmpty() || log.contains(c.logged));
            QFile::remove(download->path());
        }
    }
}

TEST_F(ResumeTest, PauseBeforeTheFirstAnswerKeepsNothing) {
    serve(patternedBytes(100), {.stallHead = true});
    const auto download = add();
    download->startDownload();
    ASSERT_TRUE(main.waitUntil([&] { return !server.requests().empty(); }));
    download->pause();
    EXPECT_FALSE(download->userSettings().contains(keys::responseURL));
    EXPECT_EQ(downloadedNames(), QStringList());
    server.release();
}

/// What the container says about itself must be enough to go on by.
TEST_F(ResumeTest, ContainerCarriesItsOwnMetadata) {
    const auto download = paused();
    waitForDisks();
    const QByteArray info = contents(downloadedPath(u"file.bin.orlop/Archive.orlopinfo"_s));
    const QVariantMap archive = platform::readPropertyList(info).value.toMap();
    EXPECT_EQ(archive.value(keys::url), server.url(u"/file.bin"_s));
    EXPECT_EQ(archive.value(keys::responseURL), server.url(u"/file.bin"_s));
    EXPECT_EQ(archive.value(keys::paused), false);
    EXPECT_EQ(archive.value(keys::expectedBytes), whole);
    EXPECT_FALSE(archive.contains(keys::statusCode));
    EXPECT_EQ(platform::expandTilde(archive.value(keys::resumePath).toString()), partial);
    EXPECT_EQ(platform::extendedAttribute(downloadedPath(u"file.bin.orlop"_s),
                                          u"user.orlop.fraction-completed"_s),
              "0.50");
}

/// Every way in which the rest that comes can be the rest of something else.
TEST_F(ResumeTest, ResumeNeverSplicesTwoFiles) {
    const QByteArray first = patternedBytes(whole, 1);
    const QByteArray second = patternedBytes(whole, 2);
    const QByteArray longer = patternedBytes(whole + 50'000, 3);
    struct Case {
        const char* what;
        Reply before, after;
        QByteArray expected;
        /// Sent in place of `after` whatever "If-Range" says.
        std::optional<Reply> toRange = {};
    };
    const auto withoutTag = [](const QByteArray& file) { return Reply{.body = file}; };
    const auto dated = [](const QByteArray& file, const char* date) {
        return Reply{
            .headers = {{"Last-Modified", date}, {"Date", "Wed, 16 Nov 1994 00:00:00 GMT"}},
            .body = file};
    };
    const Reply rest =
        reply(second.mid(half),
              {.status = 206, .headers = {{"Content-Range", "bytes 300000-599999/600000"}}});
    const std::vector<Case> cases{
        {"another version", reply(first), reply(second), second},
        {"another length", withoutTag(first), withoutTag(longer), longer},
        {"another date", dated(first, "Tue, 15 Nov 1994 12:45:26 GMT"),
         dated(second, "Tue, 15 Nov 1994 13:45:26 GMT"), second},
        {"no ranges", reply(first), reply(second, {.ranges = Reply::Ranges::Ignore}), second},
        {"another part", reply(first), reply(first, {.ranges = Reply::Ranges::WrongOffset}), first},
        {"a part of another length", withoutTag(first),
         Reply{.body = first, .ranges = Reply::Ranges::WrongTotal}, first},
        {"the rest of another version", reply(first), reply(second), second, rest},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto download = restarted(pausedAfter(half, c.before));
        server.handle("/file.bin", [&c](const support::ReceivedRequest& request) {
            return c.toRange && request.header("Range") ? *c.toRange : c.after;
        });
        download->addToQueue();
        ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
        ASSERT_EQ(download->status(), DQDownloadStatusDone);
        EXPECT_EQ(contents(download->path()), c.expected);
        EXPECT_FALSE(downloadedNames().contains(u"file.bin.orlop"_s));
        QFile::remove(download->path());
    }
}

TEST_F(ResumeTest, RangeAnsweredWithAnErrorAborts) {
    const auto download = paused();
    serve("gone", {.status = 410});
    run(download);
    EXPECT_EQ(download->status(), DQDownloadStatusAborted);
    EXPECT_EQ(download->userSettings().value(keys::statusCode), 410);
    waitForDisks();
    EXPECT_EQ(downloadedNames(), QStringList());
}

TEST_F(ResumeTest, ResumeThatGetsNoByteBeginsAnew) {
    const auto download = paused();
    server.handle("/file.bin", [&](const support::ReceivedRequest& request) {
        Reply served = reply(body);
        if (request.header("Range"))
            served.raw = QByteArray();
        served.keepAlive = !request.header("Range");
        return served;
    });
    run(download);
    EXPECT_EQ(download->status(), DQDownloadStatusDone);
    EXPECT_TRUE(log.contains(u"cannot resume download; will try complete reload"_s));
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
}

TEST_F(ResumeTest, ResumeThatReachesNoServerKeepsWhatCame) {
    const auto download = paused();
    const QString address = download->userSettings().string(keys::responseURL);
    download->userSettings().set(keys::responseURL, u"http://127.0.0.1:9/file.bin"_s);
    run(download);
    EXPECT_TRUE(download->isInterrupted());
    download->userSettings().set(keys::responseURL, address);
    serve(body);
    run(download);
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
    EXPECT_EQ(server.requests().back().header("Range"), "bytes=300000-");
}

TEST_F(ResumeTest, CutConnectionInterruptsAndKeepsWhatCame) {
    serve(body, {.cutAfter = half});
    const auto download = add();
    run(download);
    EXPECT_TRUE(download->isInterrupted());
    EXPECT_EQ(contents(partial), body.first(half));
    serve(body);
    download->addToQueue();
    EXPECT_FALSE(download->isInterrupted());
    ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
}

TEST_F(ResumeTest, AutoResumeTakesOneOfABurst) {
    set(settings::autoResume, true);
    serve(patternedBytes(100'000), {.cutAfter = 500});
    const auto first = add(), second = add();
    run(first);
    run(second);
    EXPECT_TRUE(first->isInterrupted() && second->isInterrupted());
    main.advance(0.99);
    EXPECT_EQ(first->status(), DQDownloadStatusPaused);
    main.advance(0.02);
    ASSERT_TRUE(main.waitUntil([&] {
        return server.requests().size() == 3 && first->status() == DQDownloadStatusPaused;
    }));
    EXPECT_TRUE(second->isInterrupted());
    // Within five seconds of the failure before: nothing is arranged.
    main.advance(4);
    EXPECT_TRUE(first->isInterrupted());
    // Once the user has resumed it, the arrangement is off.
    main.advance(2);
    run(second);
    second->addToQueue();
    ASSERT_TRUE(waitForStatus(*second, DQDownloadStatusPaused));
    const auto requests = server.requests().size();
    main.advance(3);
    EXPECT_EQ(server.requests().size(), requests);
}

TEST_F(ResumeTest, RemovalTakesThePartialDataAlong) {
    const auto download = paused();
    write(downloadedPath(u"file.bin.orlop/notes.txt"_s), "mine");
    download->remove();
    EXPECT_EQ(download->status(), DQDownloadStatusAborted);
    EXPECT_TRUE(downloads().empty());
    waitForDisks();
    // Nothing but what is ours goes.
    EXPECT_EQ(contents(downloadedPath(u"file.bin.orlop/notes.txt"_s)), "mine");
    EXPECT_FALSE(QFile::exists(partial));
    const auto other = paused();
    other->remove();
    waitForDisks();
    EXPECT_EQ(downloadedNames(), QStringList{u"file.bin.orlop"_s});
}

/// Killed after the file was moved, before that was saved.
TEST_F(ResumeTest, FinishedFileIsKnownAgainAndOnlyThat) {
    main.clock.setWall(static_cast<double>(QDateTime::currentSecsSinceEpoch()));
    const auto killed = paused();
    const auto download = restarted(killed);
    const auto twin = restarted(killed);
    const auto later = restarted(killed);
    run(download);
    const auto requests = server.requests().size();
    run(twin);
    EXPECT_EQ(server.requests().size(), requests);
    EXPECT_EQ(twin->status(), DQDownloadStatusDone);
    EXPECT_EQ(twin->path(), downloadedPath(u"file.bin"_s));

    ASSERT_TRUE(platform::setExtendedAttribute(downloadedPath(u"file.bin"_s),
                                               u"user.xdg.origin.url"_s, "http://elsewhere/"));
    run(later);
    EXPECT_EQ(server.requests().size(), requests + 1);
    EXPECT_EQ(downloadedNames(), QStringList({u"file 1.bin"_s, u"file.bin"_s}));
}

TEST_F(ResumeTest, AbsentVolumePausesAndKeepsTheRecord) {
    const auto download = paused();
    const QString away = u"/media/nobody/Disk/file.bin.orlop/file.bin"_s;
    download->setIntermediateDownloadTargetPath(away);
    download->addToQueue();
    main.settle();
    EXPECT_EQ(owner.missingVolumes, std::vector{download->name()});
    EXPECT_EQ(download->status(), DQDownloadStatusPaused);
    EXPECT_EQ(download->intermediateDownloadTargetPath(), away);
    EXPECT_TRUE(download->userSettings().contains(keys::responseURL));
}

TEST_F(ResumeTest, PlantedLinksAreNotFollowed) {
    write(path(u"precious"_s), "precious");
    set(settings::intermediatesLocation, qint64{0});
    const auto download = paused();
    const QString planted = path(u"support/Downloads/file.bin"_s);
    ASSERT_TRUE(QFile::remove(planted));
    ASSERT_TRUE(QFile::link(path(u"precious"_s), planted));
    run(download);
    EXPECT_EQ(contents(path(u"precious"_s)), "precious");
    // Nor is a record believed that says its partial file lies just anywhere.
    const auto other = add();
    other->setIntermediateDownloadTargetPath(path(u"precious"_s));
    other->remove();
    EXPECT_EQ(contents(path(u"precious"_s)), "precious");
}

/// The request has gone on to the next answer when the main thread hears of the challenge.
TEST_F(ResumeTest, ResumeBehindAPasswordGoesOnHoweverLateTheMainThreadIs) {
    const auto download = paused();
    server.handle("/file.bin", [this](const support::ReceivedRequest& request) {
        return request.header("Authorization")
                   ? reply(body)
                   : Reply{.status = 401,
                           .headers = {{"WWW-Authenticate", "Basic realm=x"}},
                           .body = "Who are you?"};
    });
    download->userSettings().set(keys::responseURL,
                                 u"http://me:pw@127.0.0.1:%1/file.bin"_s.arg(server.port()));
    download->startDownload();
    ASSERT_TRUE(waitBehindTheMainLoop(
        [this] { return server.requests().size() == 3 && !http::HTTPRequest::isNetworkInUse(); }));
    ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
    EXPECT_EQ(requestedRanges(), (std::vector<std::string>{"", "bytes=300000-", "bytes=300000-"}));
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
}

/// A redirect answers a resume with the file from its first byte.
TEST_F(ResumeTest, RedirectedResumeBeginsAnew) {
    for (const int status : {302, 307}) {
        const auto download = paused();
        server.serve("/file.bin", {.status = status, .headers = {{"Location", "/other.bin"}}});
        serve(body, {}, u"/other.bin"_s);
        run(download);
        ASSERT_EQ(download->status(), DQDownloadStatusDone) << status;
        EXPECT_EQ(requestedRanges().back(), "");
        EXPECT_EQ(contents(download->path()), body);
        QFile::remove(download->path());
    }
}

}  // namespace
}  // namespace engine_test
