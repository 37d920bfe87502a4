#include <sys/xattr.h>
#include <unistd.h>

#include <QFile>
#include <future>

#include "engine/settings.h"
#include "engine_fixture.h"
#include "http/http_request.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::string_literals;

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

TEST_F(ResumeTest, CookiesForOneServerDoNotReachTheOneThatItLedTo) {
    for (const bool isSame : {true, false}) {
        const auto download = paused();
        download->userSettings().set(
            keys::request,
            QVariantMap{{keys::requestPartialHeaders, QVariantMap{{u"Cookie"_s, u"a=b"_s}}}});
        if (!isSame)
            download->userSettings().set(
                keys::responseURL, download->URLString().replace(u"127.0.0.1"_s, u"localhost"_s));
        run(download);
        const support::ReceivedRequest seen = server.requests().back();
        EXPECT_EQ(seen.header("Host").value_or("").starts_with("127"), isSame);
        EXPECT_EQ(seen.header("Cookie").has_value(), isSame);
        QFile::remove(downloadedPath(u"file.bin"_s));
    }
}

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

TEST_F(ResumeTest, ContainerThatIsGoneDoesNotTakeTheNextOneWithIt) {
    const auto download = restarted(paused());
    ASSERT_TRUE(QDir(path(u"Downloads/file.bin.orlop"_s)).removeRecursively());
    std::promise<void> end;
    const std::shared_future<void> isOver = end.get_future().share();
    constexpr int allThreadsOfADisk = 8;
    for (int thread = 0; thread < allThreadsOfADisk; ++thread)
        disks.holding(folder.path()).run([isOver] { isOver.wait(); });
    // As when the queue is saved.
    EXPECT_TRUE(
        download->userSettingsArchiveWithPausedStatus(false, true).contains(keys::resumePath));
    download->startDownload();
    const bool hasBegunAnew = main.waitUntil([this] { return QFile::exists(partial); });
    end.set_value();
    ASSERT_TRUE(hasBegunAnew);
    ASSERT_TRUE(waitForStatus(*download, finishedStatuses | DQDownloadStatusPaused));
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
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

/// Nothing said how long it is: nothing said that it was whole either.
TEST_F(ResumeTest, WithoutALengthItIsGoneOnWithAfterAKill) {
    constexpr std::size_t come = 400'000;
    const QByteArray all = support::patternedBytes(1'000'000);
    support::Reply endless = reply(all, {.length = support::Reply::Length::Chunked});
    endless.stallAfter = come;
    server.serve("/file.bin", endless);
    const auto killed = add();
    const int before = owner.updates;
    killed->startDownload();
    ASSERT_TRUE(waitForBytes(*killed, static_cast<qint64>(come)));
    EXPECT_GT(owner.updates, before + 1) << "its row stood still";
    waitForDisks();
    const QVariantMap archive =
        platform::readPropertyList(contents(downloadedPath(u"file.bin.orlop/Archive.orlopinfo"_s)))
            .value.toMap();
    EXPECT_EQ(archive.value(keys::url), server.url(u"/file.bin"_s));
    const auto again = owner.add(archive.value(keys::url).toString());
    again->setIntermediateDownloadTargetPath(
        platform::expandTilde(archive.value(keys::resumePath).toString()));
    again->userSettingsFromArchive(archive);
    killed->transfer().dropWorkers();
    waitForDisks();
    server.release();
    serve(all, {.length = support::Reply::Length::Chunked});
    run(again);
    ASSERT_EQ(again->status(), DQDownloadStatusDone);
    EXPECT_EQ(contents(again->path()), all);
    EXPECT_NE(requestedRanges().back(), "") << "it was fetched from its first byte";
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
    const auto weak = [](const QByteArray& file, const char* date,
                         Reply::Ranges ranges = Reply::Ranges::Honour) {
        return Reply{.headers = {{"ETag", "W/\"1\""}, {"Last-Modified", date}},
                     .body = file,
                     .ranges = ranges};
    };
    Reply coded = reply(first);
    coded.headers.emplace_back("Content-Encoding", "br");
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
        {"the same weak tag and another date",
         weak(first, "Tue, 15 Nov 1994 12:45:26 GMT"),
         {},
         second,
         weak(second, "Tue, 15 Nov 1994 13:45:26 GMT", Reply::Ranges::Honour)},
        {"a date of the same second that differs",
         dated(first, "Tue, 15 Nov 1994 23:59:59.4 GMT"),
         {},
         second,
         dated(second, "Wed, 16 Nov 1994 00:00:00 GMT")},
        {"nothing said before and a tag now", withoutTag(first), {}, second, reply(second)},
        {"other bytes of the same length", reply(first), {}, second, coded},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto download = restarted(pausedAfter(half, c.before));
        server.handle("/file.bin", [&c](const support::ReceivedRequest& request) {
            if (c.toRange && request.header("Range"))
                return *c.toRange;
            return c.after.body.isEmpty() ? reply(c.expected) : c.after;
        });
        download->addToQueue();
        ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
        ASSERT_EQ(download->status(), DQDownloadStatusDone);
        EXPECT_EQ(contents(download->path()), c.expected);
        waitForDisks();
        EXPECT_EQ(downloadedNames(), QStringList{u"file.bin"_s});
        QFile::remove(download->path());
    }
}

/// A whole answer in place of the rest comes beside what is there, which goes when it is complete.
TEST_F(ResumeTest, WhatCameStaysUntilTheNewFileIsComplete) {
    const QByteArray second = patternedBytes(whole, 2);
    const QString beside = downloadedPath(u"file.bin 1.orlop/file.bin"_s);
    enum class End { Complete, CutAtOnce, Paused, Removed };
    for (const End end : {End::Complete, End::CutAtOnce, End::Paused, End::Removed}) {
        for (const bool restarts : {false, true}) {
            SCOPED_TRACE(static_cast<int>(end) * 10 + restarts);
            auto download = paused();
            Reply begun = reply(second);
            (end == End::CutAtOnce ? begun.cutAfter : begun.stallAfter) =
                end == End::CutAtOnce ? 0 : 100'000;
            server.serve("/file.bin", begun);
            download->startDownload();
            if (end == End::CutAtOnce) {
                ASSERT_TRUE(waitForStatus(*download, DQDownloadStatusPaused));
                waitForDisks();
                EXPECT_EQ(downloadedNames(), QStringList{u"file.bin.orlop"_s});
                EXPECT_EQ(download->userSettings().value(keys::keptBytes), half);
            } else {
                ASSERT_TRUE(main.waitUntil([&] { return QFile(beside).size() >= 100'000; }));
                download->pause();
            }
            EXPECT_EQ(contents(partial), body.first(half));
            server.release();
            serve(end == End::CutAtOnce ? body : second);
            if (restarts)
                download = restarted(download);
            if (end == End::Removed) {
                download->remove();
                waitForDisks();
                EXPECT_EQ(downloadedNames(), QStringList());
                continue;
            }
            run(download);
            ASSERT_EQ(download->status(), DQDownloadStatusDone);
            EXPECT_EQ(requestedRanges().back(),
                      end == End::CutAtOnce ? "bytes=300000-" : "bytes=100000-");
            EXPECT_EQ(contents(download->path()), end == End::CutAtOnce ? body : second);
            waitForDisks();
            EXPECT_EQ(downloadedNames(), QStringList{u"file.bin"_s});
            QFile::remove(download->path());
        }
    }
}

/// The length was not known, and all of it is there.
TEST_F(ResumeTest, NothingLeftIsTheEnd) {
    Reply unbounded = reply(body, {.length = Reply::Length::Chunked});
    const auto download = pausedAfter(half, unbounded);
    server.serve("/file.bin", {.status = 416, .headers = {{"Content-Range", "bytes */300000"}}});
    run(download);
    ASSERT_EQ(download->status(), DQDownloadStatusDone);
    EXPECT_EQ(contents(download->path()), body.first(half));
}

/// None of these says that the data on disk is not the file's.
TEST_F(ResumeTest, RefusalsAndFailuresKeepWhatCame) {
    struct Case {
        const char* what;
        Reply answer;
        int status;  ///< 0: interrupted.
    };
    Reply silent;
    silent.raw = QByteArray();
    silent.keepAlive = false;
    std::vector<Case> cases{
        {"no answer", silent, 0},
        {"something else than a part", {.status = 203, .body = "other"}, 203},
        {"a part for all", {.status = 200, .headers = {{"Content-Range", "bytes 0-9/10"}}}, 200},
        {"nothing new", {.status = 304, .headers = {{"Location", "/file.bin"}}}, 304},
        {"a page for all",
         {.headers = {{"Content-Type", "text/html"}}, .body = "<html>Log in</html>"},
         0},
        {"a file of nobody", {.body = "Please log in."}, 0},
    };
    set(settings::retriesWhenServerIsBusy, qint64{0});
    for (const int status : {202, 205, 207, 226, 401, 403, 404, 407, 408, 410, 416, 429, 500, 503})
        cases.push_back({"refused", {.status = status, .body = "no"}, status});
    for (const char* length : {"600000", "*"})
        cases.push_back({"no such part",
                         {.status = 416, .headers = {{"Content-Range", "bytes */"s + length}}},
                         416});
    for (const Case& c : cases) {
        for (const bool restarts : {false, true}) {
            SCOPED_TRACE(c.what + std::to_string(c.status) + (restarts ? " restarted" : ""));
            auto download = paused();
            server.serve("/file.bin", c.answer);
            run(download);
            EXPECT_EQ(download->isInterrupted(), c.status == 0);
            EXPECT_EQ(download->status(),
                      c.status == 0 ? DQDownloadStatusPaused : DQDownloadStatusAborted);
            if (c.status > 0) {
                EXPECT_EQ(download->userSettings().value(keys::statusCode), c.status);
            }
            waitForDisks();
            ASSERT_EQ(downloadedNames(), QStringList{u"file.bin.orlop"_s});
            EXPECT_EQ(contents(partial), body.first(half));
            EXPECT_EQ(download->userSettings().value(keys::keptBytes), half);
            if (restarts)
                download = restarted(download);
            if (download->status() == DQDownloadStatusAborted)
                download = owner.queue.retry(*download, false);
            serve(body);
            run(download);
            ASSERT_EQ(download->status(), DQDownloadStatusDone);
            EXPECT_EQ(requestedRanges().back(), "bytes=300000-");
            EXPECT_EQ(contents(download->path()), body);
            EXPECT_EQ(downloadedNames(), QStringList{u"file.bin"_s});
            QFile::remove(download->path());
        }
    }
}

TEST_F(ResumeTest, AnotherLengthGivesUpWhatCame) {
    const auto download = paused();
    const QByteArray shorter = patternedBytes(1'000, 5);
    server.handle("/file.bin", [&](const support::ReceivedRequest& request) {
        return request.header("Range")
                   ? Reply{.status = 416, .headers = {{"Content-Range", "bytes */1000"}}}
                   : reply(shorter);
    });
    download->addToQueue();
    ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
    EXPECT_EQ(contents(download->path()), shorter);
    waitForDisks();
    EXPECT_EQ(downloadedNames(), QStringList{u"file.bin"_s});
}

/// A link that a server signs for a while; its origin gives a fresh one.
TEST_F(ResumeTest, ExpiredLinkIsRenewedByItsOrigin) {
    set(settings::retriesWhenServerIsBusy, qint64{0});
    std::atomic<bool> isExpired = false, isClosed = false;
    Reply begun = reply(body);
    begun.stallAfter = half;
    server.serve("/signed-1", begun);
    server.handle("/file.bin", [&](const support::ReceivedRequest&) {
        if (isClosed)
            return Reply{.status = 503};
        return Reply{.status = 302,
                     .headers = {{"Location", isExpired ? "/signed-2" : "/signed-1"}}};
    });
    for (const bool failsAtOrigin : {false, true}) {
        isExpired = isClosed = false;
        server.serve("/signed-1", begun);
        auto download = add();
        download->startDownload();
        ASSERT_TRUE(waitForBytes(*download, half));
        download->pause();
        server.release();
        EXPECT_TRUE(download->userSettings().string(keys::responseURL).endsWith(u"/signed-1"_s));
        isExpired = true;
        isClosed = failsAtOrigin;
        server.serve("/signed-1", {.status = 403});
        serve(body, {}, u"/signed-2"_s);
        run(download);
        if (failsAtOrigin) {
            EXPECT_EQ(download->status(), DQDownloadStatusAborted);
            EXPECT_EQ(download->userSettings().value(keys::statusCode), 503);
            isClosed = false;
            download = restarted(download);
            run(download);
        }
        ASSERT_EQ(download->status(), DQDownloadStatusDone);
        EXPECT_EQ(server.requests().back().target, "/signed-2");
        EXPECT_EQ(requestedRanges().back(), "bytes=300000-");
        EXPECT_EQ(contents(download->path()), body);
        QFile::remove(download->path());
    }
}

TEST_F(ResumeTest, AddressOutOfReachIsGoneOnWithoutAtTheOriginal) {
    const auto download = paused();
    download->userSettings().set(keys::responseURL, u"http://127.0.0.1:9/file.bin"_s);
    run(download);
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
    EXPECT_EQ(requestedRanges().back(), "bytes=300000-");
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
    for (const int status : {0, 404}) {
        const auto other = paused();
        if (status > 0) {
            server.serve("/file.bin", {.status = status});
            run(other);
        }
        other->remove();
        waitForDisks();
        EXPECT_EQ(downloadedNames(), QStringList{u"file.bin.orlop"_s});
    }
}

/// Killed after the file was moved, before that was saved.
TEST_F(ResumeTest, FinishedFileIsKnownAgainAndOnlyThat) {
    main.clock.setWall(static_cast<double>(QDateTime::currentSecsSinceEpoch()));
    const QString finished = downloadedPath(u"file.bin"_s);
    const auto killed = paused();
    const auto date = killed->userSettings().value(keys::date);
    const auto twin = restarted(killed);
    const auto beside = restarted(killed);
    const auto plain = restarted(killed);
    const auto later = restarted(killed);
    run(killed);
    const auto requests = server.requests().size();
    run(twin);
    // Nor had the queue heard of any answer.
    const auto unsaved = owner.add(server.url(u"/file.bin"_s));
    unsaved->userSettingsFromArchive({{keys::date, date}});
    run(unsaved);
    EXPECT_EQ(owner.history.back(), u"file.bin"_s);
    EXPECT_EQ(unsaved->originalURLString(), server.url(u"/file.bin"_s));
    // It had begun anew beside data that is still there.
    const QString old = beside->intermediateDownloadTargetPath();
    ASSERT_TRUE(QDir().mkpath(QFileInfo(old).path()));
    ASSERT_EQ(platform::writeFileAtomically(old, "data"), std::nullopt);
    run(beside);
    EXPECT_FALSE(platform::pathExists(old));
    // On a disk without attributes.
    for (const char* name : {"user.orlop.download", "user.xdg.origin.url"})
        removexattr(QFile::encodeName(finished).constData(), name);
    run(plain);
    for (const auto& known : {twin, unsaved, beside, plain}) {
        EXPECT_EQ(known->status(), DQDownloadStatusDone);
        EXPECT_EQ(known->path(), finished);
    }
    EXPECT_EQ(server.requests().size(), requests);

    // Another file of the same name, length and age.
    ASSERT_TRUE(QFile::copy(finished, finished + u"x"_s) && QFile::remove(finished) &&
                QFile::rename(finished + u"x"_s, finished));
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

TEST_F(ResumeTest, DataWithAnotherNameIsNotAppendedTo) {
    set(settings::intermediatesLocation, qint64{0});
    const auto download = paused();
    const QByteArray begun = path(u"support/Downloads/file.bin"_s).toLocal8Bit();
    const QString twin = path(u"twin"_s);
    ASSERT_EQ(link(begun.constData(), twin.toLocal8Bit().constData()), 0);
    const QByteArray before = contents(twin);
    run(download);
    EXPECT_EQ(contents(twin), before);
    EXPECT_NE(download->status(), DQDownloadStatusDone);
    ASSERT_TRUE(QFile::remove(twin));
    run(download);
    EXPECT_EQ(contents(download->path()), body);
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

TEST_F(ResumeTest, RedirectedResumeGoesOn) {
    for (const int status : {302, 307}) {
        const auto download = paused();
        server.serve("/file.bin", {.status = status, .headers = {{"Location", "/other.bin"}}});
        serve(body, {}, u"/other.bin"_s);
        run(download);
        ASSERT_EQ(download->status(), DQDownloadStatusDone) << status;
        EXPECT_EQ(requestedRanges().back(), "bytes=300000-");
        EXPECT_EQ(contents(download->path()), body);
        QFile::remove(download->path());
    }
}

}  // namespace
}  // namespace engine_test
