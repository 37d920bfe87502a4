#include <sys/xattr.h>
#include <QDir>
#include <QFile>

#include "engine/background.h"
#include "engine/settings.h"
#include "engine_fixture.h"
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

TEST_F(TransferTest, PauseBeforeTheFirstAnswerKeepsNothing) {
    Reply served = reply(patternedBytes(100));
    served.stallHead = true;
    server.serve("/file.bin", served);
    const auto download = add();
    download->startDownload();
    ASSERT_TRUE(main.waitUntil([&] { return !server.requests().empty(); }));
    download->pause();
    EXPECT_EQ(download->statusDescriptionWithLiveDetails(false), u"Pending");
    EXPECT_EQ(downloadedNames(), QStringList());
    server.release();
}

TEST_F(TransferTest, PausedDownloadGoesOnWhereItStood) {
    const QByteArray body = patternedBytes(whole);
    const auto download = pausedAfter(half, reply(body));
    EXPECT_EQ(download->statusDescriptionWithLiveDetails(false), u"Paused");
    EXPECT_EQ(download->downloadCompletionFraction(), 0);
    run(download);
    EXPECT_EQ(requestedRanges(), (std::vector<std::string>{"", "bytes=300000-"}));
    EXPECT_EQ(server.requests().back().header("If-Range"), reply(body).headers[0].second);
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
}

TEST_F(TransferTest, DownloadGoesOnAfterARestart) {
    const QByteArray body = patternedBytes(whole);
    const auto download = restarted(pausedAfter(half, reply(body)));
    EXPECT_EQ(download->statusDescriptionWithLiveDetails(false), u"Paused");
    run(download);
    EXPECT_EQ(requestedRanges().back(), "bytes=300000-");
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
}

/// What the container says about itself must be enough to go on by.
TEST_F(TransferTest, ContainerCarriesItsOwnMetadata) {
    const QByteArray body = patternedBytes(whole);
    const auto download = pausedAfter(half, reply(body));
    const QByteArray info = contents(downloadedPath(u"file.bin.orlop/Archive.orlopinfo"_s));
    const QVariantMap archive = platform::readPropertyList(info).value.toMap();
    EXPECT_EQ(archive.value(keys::url), server.url(u"/file.bin"_s));
    EXPECT_EQ(archive.value(keys::responseURL), server.url(u"/file.bin"_s));
    EXPECT_EQ(archive.value(keys::paused), false);
    EXPECT_EQ(archive.value(keys::expectedBytes), whole);
    EXPECT_FALSE(archive.contains(keys::statusCode));
    EXPECT_EQ(platform::expandTilde(archive.value(keys::resumePath).toString()),
              downloadedPath(u"file.bin.orlop/file.bin"_s));
    EXPECT_EQ(platform::extendedAttribute(downloadedPath(u"file.bin.orlop"_s),
                                          u"user.orlop.fraction-completed"_s),
              "0.50");
}

/// Every way in which the rest that comes can be the rest of something else.
TEST_F(TransferTest, ResumeNeverSplicesTwoFiles) {
    const QByteArray first = patternedBytes(whole, 1);
    const QByteArray second = patternedBytes(whole, 2);
    const QByteArray longer = patternedBytes(whole + 50'000, 3);
    struct Case {
        const char* what;
        Reply before, after;
        QByteArray expected;
    };
    const auto withoutTag = [](const QByteArray& body) { return Reply{.body = body}; };
    const auto dated = [&](const QByteArray& body, const char* date) {
        Reply reply = withoutTag(body);
        reply.headers = {{"Last-Modified", date}, {"Date", "Wed, 16 Nov 1994 00:00:00 GMT"}};
        return reply;
    };
    Reply deaf = reply(second);
    deaf.ranges = Reply::Ranges::Ignore;
    Reply wrongOffset = reply(first);
    wrongOffset.ranges = Reply::Ranges::WrongOffset;
    Reply wrongTotal = withoutTag(first);
    wrongTotal.ranges = Reply::Ranges::WrongTotal;
    Reply fickle = reply(second);  // Sends the rest of another version whatever "If-Range" says.
    const std::vector<Case> cases{
        {"another version", reply(first), reply(second), second},
        {"another length", withoutTag(first), withoutTag(longer), longer},
        {"another date", dated(first, "Tue, 15 Nov 1994 12:45:26 GMT"),
         dated(second, "Tue, 15 Nov 1994 13:45:26 GMT"), second},
        {"no ranges", reply(first), deaf, second},
        {"another part", reply(first), wrongOffset, first},
        {"a part of another length", withoutTag(first), wrongTotal, first},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto download = restarted(pausedAfter(half, c.before));
        server.serve("/file.bin", c.after);
        download->addToQueue();
        ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
        ASSERT_EQ(download->status(), DQDownloadStatusDone);
        EXPECT_EQ(contents(download->path()), c.expected);
        EXPECT_FALSE(downloadedNames().contains(u"file.bin.orlop"_s));
        QFile::remove(download->path());
    }
    // And a server that answers with the rest of another version although asked not to.
    const auto download = restarted(pausedAfter(half, reply(first)));
    server.handle("/file.bin", [&](const support::ReceivedRequest& request) {
        if (!request.header("Range"))
            return fickle;
        Reply part = fickle;
        part.status = 206;
        part.body = second.mid(half);
        part.headers.emplace_back("Content-Range", "bytes 300000-599999/600000");
        return part;
    });
    download->addToQueue();
    ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
    EXPECT_EQ(contents(download->path()), second);
}

TEST_F(TransferTest, RangeAnsweredWithAnErrorAborts) {
    const auto download = pausedAfter(half, reply(patternedBytes(whole)));
    Reply refusal = reply("gone");
    refusal.status = 410;
    server.serve("/file.bin", refusal);
    run(download);
    EXPECT_EQ(download->statusDescriptionWithLiveDetails(false), u"Aborted — 410");
    EXPECT_EQ(downloadedNames(), QStringList());
}

TEST_F(TransferTest, ResumeThatGetsNoByteBeginsAnew) {
    const QByteArray body = patternedBytes(whole);
    const auto download = pausedAfter(half, reply(body));
    server.handle("/file.bin", [&](const support::ReceivedRequest& request) {
        Reply served = reply(body);
        if (request.header("Range"))
            served.raw = QByteArray();
        served.keepAlive = !request.header("Range");
        return served;
    });
    run(download);
    EXPECT_EQ(download->status(), DQDownloadStatusDone);
    EXPECT_TRUE(log->contains(u"cannot resume download; will try complete reload"_s));
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
}

TEST_F(TransferTest, ResumeThatReachesNoServerKeepsWhatCame) {
    const QByteArray body = patternedBytes(whole);
    const auto download = pausedAfter(half, reply(body));
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

TEST_F(TransferTest, CutConnectionInterruptsAndKeepsWhatCame) {
    const QByteArray body = patternedBytes(whole);
    Reply cut = reply(body);
    cut.cutAfter = half;
    server.serve("/file.bin", cut);
    const auto download = add();
    run(download);
    EXPECT_EQ(download->statusDescriptionWithLiveDetails(false), u"Interrupted");
    EXPECT_EQ(contents(downloadedPath(u"file.bin.orlop/file.bin"_s)), body.first(half));
    serve(body);
    download->addToQueue();
    EXPECT_FALSE(download->isInterrupted());
    ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
}

TEST_F(TransferTest, AutoResumeTakesOneOfABurst) {
    set(settings::autoResume, true);
    Reply cut = reply(patternedBytes(100'000));
    cut.cutAfter = 500;
    server.serve("/file.bin", cut);
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

TEST_F(TransferTest, RemovalTakesThePartialDataAlong) {
    const auto download = pausedAfter(half, reply(patternedBytes(whole)));
    write(downloadedPath(u"file.bin.orlop/notes.txt"_s), "mine");
    download->remove();
    EXPECT_EQ(download->status(), DQDownloadStatusAborted);
    EXPECT_TRUE(manager.queue.empty());
    // Nothing but what is ours goes.
    EXPECT_EQ(contents(downloadedPath(u"file.bin.orlop/notes.txt"_s)), "mine");
    EXPECT_FALSE(QFile::exists(downloadedPath(u"file.bin.orlop/file.bin"_s)));
    const auto other = pausedAfter(half, reply(patternedBytes(whole)));
    other->remove();
    EXPECT_EQ(downloadedNames(), QStringList{u"file.bin.orlop"_s});
    EXPECT_EQ(manager.decrements, 0);
}

TEST_F(TransferTest, VanishedPartialFileMeansANewStart) {
    const QByteArray body = patternedBytes(whole);
    const auto download = pausedAfter(half, reply(body));
    QFile::remove(downloadedPath(u"file.bin.orlop/file.bin"_s));
    run(download);
    EXPECT_TRUE(log->contains(u"intermediate download file vanished"_s));
    EXPECT_EQ(requestedRanges().back(), "");
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
}

/// Killed after the file was moved, before that was saved.
TEST_F(TransferTest, FinishedFileIsKnownAgainAndOnlyThat) {
    main.clock.setWall(static_cast<double>(QDateTime::currentSecsSinceEpoch()));
    const QByteArray body = patternedBytes(whole);
    const auto paused = pausedAfter(half, reply(body));
    const auto download = restarted(paused);
    const auto twin = restarted(paused);
    const auto later = restarted(paused);
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

TEST_F(TransferTest, AbsentVolumePausesAndKeepsTheRecord) {
    const auto download = pausedAfter(half, reply(patternedBytes(whole)));
    const QString away = u"/media/nobody/Disk/file.bin.orlop/file.bin"_s;
    download->setIntermediateDownloadTargetPath(away);
    int alerts = 0;
    environment.prepareMissingVolumeAlert = [&](DQDownload&) { ++alerts; };
    installEnvironment(environment);
    download->addToQueue();
    main.settle();
    EXPECT_EQ(alerts, 1);
    EXPECT_EQ(download->status(), DQDownloadStatusPaused);
    EXPECT_EQ(download->intermediateDownloadTargetPath(), away);
    EXPECT_TRUE(download->userSettings().contains(keys::responseURL));
}

/// Killed after the last byte, before the file was moved: nothing is left to be asked for.
TEST_F(TransferTest, CompletePartialDataIsFinishedWithoutARequest) {
    const QByteArray body = patternedBytes(whole);
    const auto download = pausedAfter(half, reply(body));
    write(downloadedPath(u"file.bin.orlop/file.bin"_s), body);
    const auto requests = server.requests().size();
    run(restarted(download));
    EXPECT_EQ(server.requests().size(), requests);
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
}

TEST_F(TransferTest, PartialFileThatIsTooLongIsGivenUp) {
    const QByteArray body = patternedBytes(whole);
    const auto download = pausedAfter(half, reply(body));
    write(downloadedPath(u"file.bin.orlop/file.bin"_s), body + "x");
    run(download);
    EXPECT_EQ(requestedRanges().back(), "");
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
}

/// After the power failed, the end of a file may hold anything but what was written.
TEST_F(TransferTest, BytesThatMayNotHaveReachedTheDiskAreFetchedAgain) {
    const QByteArray body = patternedBytes(whole);
    const auto download = pausedAfter(half, reply(body));
    waitForBackgroundWork();
    const QString partial = downloadedPath(u"file.bin.orlop/file.bin"_s);
    const auto mark = platform::extendedAttribute(partial, u"user.orlop.synced"_s);
    ASSERT_TRUE(mark) << "no extended attributes here";
    QByteArray data = contents(partial);
    data.replace(100'000, 200'000, QByteArray(200'000, '\0'));
    write(partial, data);
    ASSERT_TRUE(
        platform::setExtendedAttribute(partial, u"user.orlop.synced"_s, "another-boot 100000"));
    run(download);
    EXPECT_EQ(requestedRanges().back(), "bytes=100000-");
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
}

TEST_F(TransferTest, PlantedLinksAreNotFollowed) {
    write(path(u"precious"_s), "precious");
    set(settings::intermediatesLocation, qint64{0});
    const auto download = pausedAfter(half, reply(patternedBytes(whole)));
    const QString partial = path(u"support/Downloads/file.bin"_s);
    ASSERT_TRUE(QFile::remove(partial));
    ASSERT_TRUE(QFile::link(path(u"precious"_s), partial));
    run(download);
    EXPECT_EQ(contents(path(u"precious"_s)), "precious");
    // Nor is a record believed that says its partial file lies just anywhere.
    const auto other = add();
    other->setIntermediateDownloadTargetPath(path(u"precious"_s));
    other->remove();
    EXPECT_EQ(contents(path(u"precious"_s)), "precious");
}

/// A redirect answers a resume with the file from its first byte.
TEST_F(TransferTest, RedirectedResumeBeginsAnew) {
    const QByteArray body = patternedBytes(whole);
    for (const int status : {302, 307}) {
        const auto download = pausedAfter(half, reply(body));
        server.serve("/file.bin", {.status = status, .headers = {{"Location", "/other.bin"}}});
        serve(body, u"/other.bin"_s);
        run(download);
        ASSERT_EQ(download->status(), DQDownloadStatusDone) << status;
        EXPECT_EQ(requestedRanges().back(), "");
        EXPECT_EQ(contents(download->path()), body);
        QFile::remove(download->path());
    }
}

}  // namespace
}  // namespace engine_test
