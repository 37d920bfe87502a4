#include <sys/stat.h>

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <array>
#include <atomic>
#include <map>

#include "engine/acceleration/acceleration_settings.h"
#include "engine/finishing/file_assembly.h"
#include "engine/paths/intermediate_files.h"
#include "engine/paths/part_journal.h"
#include "engine/paths/part_layout.h"
#include "engine/settings.h"
#include "engine/transfer/resume_plan.h"
#include "engine/transfer/transfer.h"
#include "engine/workers/download_worker_prototype.h"
#include "engine/workers/partial_file_marks.h"
#include "engine_fixture.h"
#include "platform/files/disks.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;
using support::patternedBytes;
using support::Reply;

TEST(SplitTest, RemainderGoesToTheFirstPart) {
    struct Case {
        qint64 length, minimum, channels;
        std::vector<std::pair<qint64, qint64>> parts;
    };
    const Case cases[] = {
        {199'999, 100'000, 4, {}},
        {200'000, 100'000, 4, {{100'000, 199'999}}},
        {1'000'000, 300'000, 4, {{333'334, 666'666}, {666'667, 999'999}}},
        {1'000'003, 100'000, 4, {{250'003, 500'002}, {500'003, 750'002}, {750'003, 1'000'002}}},
    };
    for (const Case& c : cases) {
        std::vector<std::pair<qint64, qint64>> parts;
        for (const auto& part : splitIntoFractions(c.length, c.minimum, c.channels, u"/p"_s))
            parts.emplace_back(part.start, part.end);
        EXPECT_EQ(parts, c.parts) << c.length;
    }
    EXPECT_EQ(splitIntoFractions(200'000, 100'000, 4, u"/a/p"_s)[0].target, u"/a/p.orlop-xf-1"_s);
}

TEST(ResumePlanTest, PartialDataFitsOrDoesNot) {
    using Kind = ResumePlan::Kind;
    const QString p = u"/a/p"_s;
    const QStringList paths{p, p + u".orlop-xf-1"_s, p + u".orlop-xf-2"_s, p + u"x"_s};
    const std::vector<StoredFraction> parts{{paths[1], 100, 199}, {paths[2], 200, 299}};
    constexpr qint64 none = -1;
    struct Case {
        const char* what;
        /// Of the first part's file, the second's, the third's and a stranger.
        std::vector<qint64> sizes;
        bool hasRecord;
        qint64 length;
        bool isFinishing;
        Kind kind;
    };
    const Case cases[] = {
        {"nothing", {0}, false, 300, false, Kind::Nothing},
        {"one file", {70}, false, 300, false, Kind::Single},
        {"one file of unknown length", {70}, false, 0, false, Kind::Single},
        {"a whole file", {300}, false, 300, false, Kind::Complete},
        {"a whole file of unknown length", {300}, false, 0, true, Kind::Complete},
        {"too much", {301}, false, 300, false, Kind::Damaged},
        {"parts", {70, 0, 100}, true, 300, false, Kind::Accelerated},
        {"all parts", {100, 100, 100}, true, 300, false, Kind::Complete},
        {"a part lost", {70, 50}, true, 300, false, Kind::Damaged},
        {"a stray part", {70, 50, 1, 1}, true, 300, false, Kind::Damaged},
        {"record lost", {70, 50}, false, 300, false, Kind::Damaged},
        {"parts lost", {70}, true, 300, false, Kind::Single},
        {"parts of another length", {70, 0, 9}, true, 400, false, Kind::Damaged},
        {"join cut short in the second part", {150, 100, 100}, true, 300, false, Kind::Complete},
        {"join cut short in the third part", {250, none, 100}, true, 300, false, Kind::Complete},
        {"join cut short before the move", {300}, true, 300, false, Kind::Complete},
    };
    for (const Case& c : cases) {
        PartialFileSizes sizes;
        for (std::size_t part = 0; part < c.sizes.size(); ++part) {
            if (c.sizes[part] == none)
                continue;
            sizes.total += c.sizes[part];
            if (c.sizes.size() > 1)
                sizes.byPath.insert(paths[static_cast<qsizetype>(part)], c.sizes[part]);
        }
        const auto recorded = c.hasRecord ? parts : std::vector<StoredFraction>();
        EXPECT_EQ(planResume(p, sizes, recorded, c.length, c.isFinishing).kind, c.kind) << c.what;
    }
}

TEST(ResumePlanTest, RecordsFromElsewhereAreNotBelieved) {
    const auto entry = [](const QString& target, qint64 start, qint64 end) {
        return QVariant(QVariantMap{
            {keys::workerTarget, target}, {keys::workerStart, start}, {keys::workerEnd, end}});
    };
    const auto read = [](const QVariantList& list) {
        return fractionsFromArchive(list, u"/new/p.orlop/p"_s);
    };
    // The folder has been moved.
    EXPECT_EQ(read({entry(u"/old/p.orlop/p.orlop-xf-1"_s, 100, 199)})[0].target,
              u"/new/p.orlop/p.orlop-xf-1"_s);
    EXPECT_TRUE(read({entry(u"/a"_s, 0, 199)}).empty());
    EXPECT_TRUE(read({entry(u"/a"_s, 100, 99)}).empty());
    EXPECT_TRUE(read({entry(u"/a"_s, 100, 199), entry(u"/b"_s, 201, 300)}).empty());
    QVariantList thousands;
    for (qint64 index = 1; index < 1000; ++index)
        thousands.append(entry(u"/a"_s, index, index));
    EXPECT_TRUE(read(thousands).empty());
}

TEST_F(EngineTest, HostsAreAcceleratedByTwoLists) {
    AccelerationSettings acceleration(*defaults);
    const auto download = owner.add(u"http://files.example.org/a"_s);
    EXPECT_FALSE(download->accelerates());
    download->toggleAcceleration();
    EXPECT_TRUE(download->accelerates());
    EXPECT_EQ(acceleration.accelerationHostWhitelist(), QStringList{u"example.org"_s});
    acceleration.setAccelerates(true);
    EXPECT_TRUE(download->accelerates());
    download->toggleAcceleration();
    EXPECT_FALSE(download->accelerates());
    EXPECT_FALSE(defaults->hasValueForKey(settings::accelerationHostWhitelist.name()));
    EXPECT_EQ(acceleration.accelerationHostBlacklist(), QStringList{u"example.org"_s});
    const auto local = owner.add(u"file:///a"_s);
    local->toggleAcceleration();
    EXPECT_TRUE(acceleration.accelerationHostBlacklist().contains(u"?"_s));
    for (const auto& [channels, factor] :
         std::map<qint64, qint64>{{0, 4}, {1, 4}, {2, 2}, {9, 9}, {12, 9}}) {
        acceleration.setAccelerationFactor(channels);
        EXPECT_EQ(acceleration.accelerationFactor(), factor);
    }
}

constexpr std::array partStarts{0, 250'003, 500'003, 750'003, 1'000'003};

/// Wherever the bytes of the parts lie.
class SplitFileTest : public TransferTest {
protected:
    explicit SplitFileTest(PartLayout layout) : layout_(layout) {
        AccelerationSettings(*defaults).setAccelerates(true);
        set(settings::accelerationPartsInPlace, layout == PartLayout::InPlace);
    }
    [[nodiscard]] bool areInPlace() const { return layout_ == PartLayout::InPlace; }
    [[nodiscard]] PartPlace place(std::size_t part) const {
        return placeOfPart(
            layout_, primary,
            part == 0 ? primary : accelerationFragmentPath(primary, static_cast<int>(part)),
            partStarts[part]);
    }
    /// What has come of a part of four.
    [[nodiscard]] QByteArray bytesOf(std::size_t part) const {
        const PartPlace lies = place(part);
        if (!lies.isShared())
            return contents(lies.file);
        const auto entry = PartJournal::read(lies.journal);
        return contents(lies.file).mid(lies.start, entry ? entry->received : 0);
    }
    /// In files without attributes, as a copy of them leaves.
    void layDown(std::size_t part, const QByteArray& bytes) {
        const PartPlace lies = place(part);
        QByteArray file = lies.isShared() ? contents(lies.file) : QByteArray();
        file.resize(std::max(file.size(), lies.start));
        file.replace(lies.start, bytes.size(), bytes);
        QFile::remove(lies.file);
        write(lies.file, file);
        if (lies.isShared()) {
            QFile::remove(lies.journal);
            const auto journal = PartJournal::open(lies.journal, lies.start);
            ASSERT_TRUE(journal && journal->setReceived(bytes.size()));
        }
    }

    /// Starts a split download and stops it when each part has half of its bytes.
    DownloadPtr pausedHalfway() {
        serve(body, {.stallAfter = static_cast<std::size_t>(body.size() / 8)});
        auto download = add();
        download->startDownload();
        EXPECT_TRUE(waitForBytes(*download, body.size() / 8 * 4));
        EXPECT_EQ(download->transfer().workers().size(), 4u);
        download->pause();
        server.release();
        serve(body);
        return download;
    }

    const QByteArray body = patternedBytes(1'000'003);
    const QString primary = downloadedPath(u"file.bin.orlop/file.bin"_s);

private:
    const PartLayout layout_;
};

class AccelerationTest : public SplitFileTest, public testing::WithParamInterface<PartLayout> {
protected:
    AccelerationTest() : SplitFileTest(GetParam()) {}
};

constexpr auto bothLayouts = [] { return testing::Values(PartLayout::Apart, PartLayout::InPlace); };

INSTANTIATE_TEST_SUITE_P(Layouts, AccelerationTest, bothLayouts());

TEST_P(AccelerationTest, SmallFilesAndDeafServersGetOneConnection) {
    serve(patternedBytes(199'999));
    run(add());
    EXPECT_EQ(requestedRanges().size(), 1u);
    serve(body, {.announceRanges = false});
    const auto download = add();
    run(download);
    EXPECT_EQ(requestedRanges().size(), 2u);
    EXPECT_TRUE(download->userSettings().boolean(keys::rangesDisabled));
}

TEST_P(AccelerationTest, TellsTheServerThatItIsLedToNothingThatWasMeantForTheFirst) {
    serve(body);
    const QString there = server.url(u"/file.bin"_s).replace(u"127.0.0.1"_s, u"localhost"_s);
    server.serve("/start", {.status = 302, .headers = {{"Location", there.toStdString()}}});
    const auto download = add(u"/start"_s);
    download->userSettings().set(
        keys::request,
        QVariantMap{{keys::requestPartialHeaders, QVariantMap{{u"Cookie"_s, u"a=b"_s}}}});
    run(download);
    ASSERT_EQ(download->status(), DQDownloadStatusDone);
    std::size_t led = 0;
    for (const support::ReceivedRequest& seen : server.requests()) {
        const bool isThere = seen.header("Host").value_or("").starts_with("localhost");
        led += isThere ? 1 : 0;
        EXPECT_EQ(seen.header("Cookie").has_value(), !isThere);
    }
    EXPECT_GE(led, 4U);
}

/// Whatever a kill, a pause or a user has left of the parts.
TEST_P(AccelerationTest, GoesOnFromWhatIsThereOfTheParts) {
    const auto completeAll = [&](const DownloadPtr&) {
        for (std::size_t part = 0; part < 4; ++part)
            layDown(part, body.mid(partStarts[part], partStarts[part + 1] - partStarts[part]));
    };
    const auto joinHalf = [&](const DownloadPtr& download) {
        completeAll(download);
        if (areInPlace()) {
            QFile::remove(accelerationFragmentPath(primary, 0));
        } else {
            write(primary, body.first(600'000));
            QFile::remove(accelerationFragmentPath(primary, 1));
        }
    };
    using Ranges = std::vector<std::string>;
    const std::string second = "bytes=375003-500002", third = "bytes=625003-750002",
                      fourth = "bytes=875003-1000002";
    struct Case {
        const char* what;
        std::function<void(const DownloadPtr&)> meanwhile;
        /// What is asked for, in order of the texts. Who is done early takes over some of
        /// another's.
        Ranges ranges;
    };
    const Case cases[] = {
        {"half of each", [](const DownloadPtr&) {}, {"bytes=125000-250002", second, third, fourth}},
        {"nothing of the first, which others were ahead of",
         [&](const DownloadPtr&) { layDown(0, {}); },
         {"bytes=0-250002", second, third, fourth}},
        {"a first that has come to its end, or run past it",
         [&](const DownloadPtr&) { layDown(0, body.first(areInPlace() ? 250'003 : 260'000)); },
         {second, third, fourth}},
        {"half of each, though others would lie elsewhere by now",
         [&](const DownloadPtr&) { set(settings::accelerationPartsInPlace, !areInPlace()); },
         {"bytes=125000-250002", second, third, fourth}},
        {"one lost",
         [&](const DownloadPtr&) { QFile::remove(accelerationFragmentPath(primary, 2)); },
         {""}},
        {"no record of them",
         [](const DownloadPtr& download) {
             download->userSettings().remove(keys::accelerationWorkers);
         },
         {""}},
        {"all parts, without any attribute", completeAll, {}},
        {"joined as far as the third when it was killed", joinHalf, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        set(settings::accelerationPartsInPlace, areInPlace());
        const auto download = restarted(pausedHalfway());
        c.meanwhile(download);
        const auto before = static_cast<std::ptrdiff_t>(server.requests().size());
        run(download);
        ASSERT_EQ(download->status(), DQDownloadStatusDone);
        EXPECT_EQ(contents(download->path()), body);
        EXPECT_EQ(downloadedNames(), QStringList{u"file.bin"_s});
        Ranges ranges = requestedRanges();
        ranges.erase(ranges.begin(), ranges.begin() + before);
        std::sort(ranges.begin(), ranges.end());
        EXPECT_TRUE(std::ranges::includes(ranges, c.ranges)) << testing::PrintToString(ranges);
        EXPECT_EQ(ranges.empty(), c.ranges.empty()) << testing::PrintToString(ranges);
        QFile::remove(download->path());
    }
}

/// Room for what has come is enough, and at the end there is nothing left to be written.
TEST_P(AccelerationTest, PartsTakeNoMoreRoomThanTheyHaveBytes) {
    static_cast<void>(pausedHalfway());
    qint64 allotted = 0, journals = 0;
    for (QDirIterator files(QFileInfo(primary).path(), QDir::Files); files.hasNext();) {
        struct stat status {};
        ASSERT_EQ(stat(QFile::encodeName(files.next()).constData(), &status), 0);
        allotted += status.st_blocks * 512;
        journals += files.fileName().contains(accelerationMarker) ? status.st_size : 0;
    }
    EXPECT_LE(allotted, body.size() * 2 / 3);
    EXPECT_EQ(journals < 2048, areInPlace());
}

TEST_F(EngineTest, JournalIsBelievedWholeOrNotAtAll) {
    const QString file = path(u"p.orlop-xf-1"_s);
    const auto journal = PartJournal::open(file, 1'000'000);
    ASSERT_TRUE(journal && journal->setReceived(4711));
    journal->setSynced(4000);
    EXPECT_EQ(PartJournal::read(file)->start, 1'000'000);
    EXPECT_FALSE(PartJournal::open(file, 0));
    const QByteArray whole = contents(file);
    for (qsizetype at = 0; at < whole.size(); ++at) {
        QByteArray spoilt = whole;
        spoilt[at] = static_cast<char>(spoilt[at] ^ 1);
        write(file, spoilt);
        const auto entry = PartJournal::read(file);
        EXPECT_EQ(entry ? entry->received : 4711, 4711) << at;
    }
    for (const auto& odd : {whole.first(100), QByteArray(500, 'x'), QByteArray()}) {
        write(file, odd);
        EXPECT_FALSE(PartJournal::read(file));
    }
}

/// The disk keeps what was synced; the piece that was joined is gone.
TEST_F(EngineTest, JoinThatAPowerFailureCutsShortLosesNoByte) {
    const QByteArray body = patternedBytes(300'000);
    const QString primary = path(u"p"_s), second = path(u"p.orlop-xf-1"_s);
    const auto mark = u"user.orlop.synced"_s;
    write(primary, body.first(100'000));
    write(second, body.mid(100'000, 100'000));
    QFile file(primary);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    markUnsynced(file.handle());
    const std::atomic<bool> goesOn = false;
    // The third cannot be read.
    EXPECT_TRUE(assembleFile({{primary, 100'000}, {second, 100'000}, {path(u"x"_s), 100'000}},
                             goesOn, disks.holding(primary))
                    .error);
    ASSERT_FALSE(QFile::exists(second));
    const QByteArray made = platform::extendedAttribute(primary, mark).value_or("");
    ASSERT_TRUE(platform::setExtendedAttribute(primary, mark,
                                               "another-boot" + made.mid(made.indexOf(' '))));
    dropUnsyncedTail(primary);
    EXPECT_EQ(contents(primary), body.first(200'000));
}

TEST_P(AccelerationTest, ChangedFileIsNeverMixed) {
    const QByteArray other = patternedBytes(body.size(), 2);
    const auto download = restarted(pausedHalfway());
    serve(other);
    download->addToQueue();
    ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), other);
}

/// Servers that promise parts and do otherwise.
TEST_P(AccelerationTest, ResultIsTheFileWhateverServersDoWithParts) {
    const QByteArray other = patternedBytes(body.size(), 9);
    bool hasCut = false;
    struct Case {
        const char* what;
        /// The answer to a range, of which so many have been asked for before.
        std::function<Reply(const std::string& range, int before)> answer;
        /// How many parts wait for a connection before the first one comes to its end.
        std::ptrdiff_t waiting = 0;
    };
    const Case cases[] = {
        {"all of it", [&](auto&, int) { return reply(body, {.ranges = Reply::Ranges::Ignore}); }},
        {"an error page", [](auto&, int) { return reply("<html>busy</html>", {.status = 503}); },
         3},
        {"another part",
         [&](auto&, int) { return reply(body, {.ranges = Reply::Ranges::WrongOffset}); }},
        {"another version",
         [&](auto&, int) {
             return Reply{.headers = {{"ETag", "\"other\""}}, .body = other};
         }},
        {"another length",
         [&](auto&, int) { return reply(body, {.ranges = Reply::Ranges::WrongTotal}); }},
        {"more than was asked for",
         [](auto&, int) { return reply(patternedBytes(300'000), {.status = 206}); }},
        {"less than was asked for",
         [&](auto& range, int) {
             if (range != "bytes=250003-500002" || std::exchange(hasCut, true))
                 return reply(body);
             return reply(
                 body.mid(250'003, 200'000),
                 {.status = 206, .headers = {{"Content-Range", "bytes 250003-500002/1000003"}}});
         }},
        {"a crawl",
         [&](auto&, int before) {
             return reply(body, {.rate = before == 0 ? std::size_t{500'000} : 0});
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        int ranges = 0;
        server.handle("/file.bin", [&](const support::ReceivedRequest& request) {
            const auto range = request.header("Range");
            Reply whole = reply(body, {.rate = 4'000'000});
            if (c.waiting > 0)
                whole.stallAfter = 100'000;
            return range ? c.answer(*range, ranges++) : whole;
        });
        const auto waiting = [this] { return log.count(u"free connection"_s); };
        const auto before = waiting();
        const auto download = add();
        download->addToQueue();
        ASSERT_TRUE(main.waitUntil([&] { return waiting() >= before + c.waiting; }));
        server.release();
        ASSERT_TRUE(waitForStatus(*download, finishedStatuses | DQDownloadStatusPaused));
        if (download->status() == DQDownloadStatusPaused)
            run(download);
        ASSERT_EQ(download->status(), DQDownloadStatusDone);
        EXPECT_EQ(contents(download->path()), body);
        QFile::remove(download->path());
        EXPECT_EQ(downloadedNames(), QStringList());
    }
}

/// How often a server refuses before it serves a part, and what comes of it.
struct HandOver {
    int refusals;
    int status;  ///< 0: it closes the connection.
    DQDownloadStatus end;
};

class RefusedHandOverTest : public SplitFileTest,
                            public testing::WithParamInterface<std::tuple<HandOver, PartLayout>> {
protected:
    RefusedHandOverTest() : SplitFileTest(std::get<1>(GetParam())) {
        // Whether two parts are refused at once, or one after the other, is the scheduler's.
        set(settings::retriesWhenServerIsBusy, qint64{10});
    }
};

/// Servers count a connection for a while after its end.
TEST_P(RefusedHandOverTest, WaitsAndTriesAgain) {
    const HandOver& c = std::get<0>(GetParam());
    int refused = 0;
    server.handle("/file.bin", [&](const support::ReceivedRequest& request) {
        Reply served = reply(body, {.rate = 4'000'000});
        const auto range = request.header("Range");
        if (!range)
            return served;
        // The second is served, so that the first worker has an end.
        if (range->starts_with("bytes=250003-") || refused++ >= c.refusals)
            return reply(body);
        served.raw = c.status == 0 ? std::optional(QByteArray()) : std::nullopt;
        served.keepAlive = c.status != 0;
        served.status = c.status == 0 ? 200 : c.status;
        return served;
    });
    const auto download = add();
    download->startDownload();
    const auto isWaiting = [&] { return download->status() == DQDownloadStatusQueued; };
    const auto hasEnded = [&] { return !matchesStatusMask(download->status(), activeStatuses); };
    for (int pauses = 0; !hasEnded() && pauses < 20; ++pauses) {
        ASSERT_TRUE(main.waitUntil([&] { return hasEnded() || isWaiting(); }));
        if (!hasEnded())
            main.advance(75);
    }
    EXPECT_EQ(download->status(), c.end);
    if (c.end == DQDownloadStatusDone)
        EXPECT_EQ(contents(download->path()), body);
    else
        EXPECT_FALSE(downloadedNames().isEmpty());
    download->remove();
    waitForDisks();
    EXPECT_EQ(downloadedNames().isEmpty(), c.end != DQDownloadStatusDone);
}

INSTANTIATE_TEST_SUITE_P(Servers, RefusedHandOverTest,
                         testing::Combine(testing::Values(HandOver{7, 429, DQDownloadStatusDone},
                                                          HandOver{7, 503, DQDownloadStatusDone},
                                                          HandOver{7, 0, DQDownloadStatusDone},
                                                          HandOver{99, 503,
                                                                   DQDownloadStatusAborted},
                                                          HandOver{99, 0, DQDownloadStatusPaused}),
                                          bothLayouts()));

TEST_P(AccelerationTest, RedirectedPartsKeepTheirPlaces) {
    set(settings::accelerationSharesSlowParts, false);
    serve(body, {}, u"/mirror.bin"_s);
    server.handle("/file.bin", [&](const support::ReceivedRequest& request) {
        Reply served = reply(body);
        served.rate = 2'000'000;
        if (request.header("Range")) {
            served.status = 302;
            served.headers = {{"Location", "/mirror.bin"}};
        }
        return served;
    });
    const auto download = add();
    run(download);
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
    int parts = 0;
    for (const auto& request : server.requests())
        parts += request.target == "/mirror.bin" && request.header("Range") ? 1 : 0;
    EXPECT_EQ(parts, 3);
}

TEST_P(AccelerationTest, FailureOfOnePartInterruptsAllAndKeepsThem) {
    std::atomic<bool> cuts = true;
    server.handle("/file.bin", [&](const support::ReceivedRequest& request) {
        Reply served = reply(body);
        const std::string range = request.header("Range").value_or("");
        if (cuts && range == "bytes=500003-750002") {
            served.cutAfter = 100'000;
        } else if (cuts) {
            served.stallAfter = 50'000;
        }
        return served;
    });
    const auto download = add();
    run(download);
    EXPECT_TRUE(download->isInterrupted());
    EXPECT_EQ(bytesOf(2), body.mid(500'003, 100'000));
    cuts = false;
    server.release();
    run(download);
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
}

}  // namespace
}  // namespace engine_test
