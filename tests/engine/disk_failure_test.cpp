#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <chrono>

#include "engine/paths/intermediate_files.h"
#include "engine/paths/part_layout.h"
#include "engine/settings.h"
#include "engine_fixture.h"
#include "failing_disk.h"
#include "links/paths/file_attributes.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;
using support::patternedBytes;
using support::Reply;

TEST_F(TransferTest, FullDiskInterruptsWithItsReasonAndGoesOnWhenThereIsRoom) {
    const QByteArray body = patternedBytes(600'000);
    serve(body);
    const auto download = add();
    {
        const FailingDisk disk(ENOSPC, 234'567);
        run(download);
        ASSERT_TRUE(download->isInterrupted());
        ASSERT_TRUE(download->lastError() && download->lastError()->underlying);
        EXPECT_EQ(download->lastError()->underlying->code, ENOSPC);
        EXPECT_TRUE(log.contains(u"cannot write to intermediate file: No space left"_s));
        EXPECT_EQ(contents(downloadedPath(u"file.bin.orlop/file.bin"_s)), body.first(234'567));
        // Nor does a resume give up what is there.
        run(download);
        EXPECT_TRUE(download->isInterrupted());
    }
    main.advance(31);
    ASSERT_TRUE(waitForStatus(*download, DQDownloadStatusDone));
    EXPECT_EQ(requestedRanges().back(), "bytes=234567-");
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
}

TEST_F(EngineTest, WhetherADiskKeepsHolesIsFoundOutByTrying) {
    EXPECT_EQ(tryHole(folder.path()), true);
    EXPECT_EQ(tryHole(path(u"missing"_s)), std::nullopt);
    const HolelessDisk disk;
    EXPECT_EQ(tryHole(folder.path()), false);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
}

/// With parts, wherever they lie: what was written of each counts, and no more.
TEST_F(TransferTest, FullDiskKeepsWhatItTookOfEachPart) {
    const QByteArray body = patternedBytes(2'000'000);
    for (const bool inPlace : {true, false}) {
        SCOPED_TRACE(inPlace);
        set(settings::accelerationEnabled, true);
        set(settings::accelerationPartsInPlace, inPlace);
        serve(body);
        const auto download = add();
        {
            const FailingDisk disk(ENOSPC, 567'890);
            run(download);
            ASSERT_TRUE(download->isInterrupted());
            const qint64 kept =
                measurePartialFiles(download->intermediateDownloadTargetPath()).total;
            EXPECT_GT(kept, 0);
            EXPECT_LE(kept, 567'890);
        }
        main.advance(31);
        ASSERT_TRUE(waitForStatus(*download, DQDownloadStatusDone));
        EXPECT_EQ(contents(download->path()), body);
        QFile::remove(download->path());
    }
}

TEST_F(TransferTest, DiskThatFailsOtherwiseWaitsForTheUser) {
    const QByteArray body = patternedBytes(100'000);
    serve(body);
    for (const int errorNumber : {EIO, EROFS}) {
        const auto download = add();
        {
            const FailingDisk disk(errorNumber, 0);
            run(download);
        }
        main.advance(100);
        ASSERT_TRUE(download->isInterrupted());
        EXPECT_EQ(download->lastError()->underlying->code, errorNumber);
        run(download);
        EXPECT_EQ(contents(download->path()), body);
    }
}

TEST_F(TransferTest, UserWhoPausesIsNotOverruledByRoom) {
    serve(patternedBytes(100'000));
    const auto download = add();
    {
        const FailingDisk disk(ENOSPC, 50'000);
        run(download);
    }
    download->addToQueue();
    download->pause();
    const auto requests = server.requests().size();
    main.advance(100);
    EXPECT_EQ(download->status(), DQDownloadStatusPaused);
    EXPECT_EQ(server.requests().size(), requests);
}

TEST_F(TransferTest, SmallFileIsPlacedWholeOrWaitsInAPartialFile) {
    const QByteArray body = patternedBytes(10'000);
    serve(body);
    const auto placed = add();
    run(placed);
    const UnlinkableFiles noUnnamedFiles;
    const auto moved = add();
    run(moved);
    EXPECT_EQ(downloadedNames(), (QStringList{u"file 1.bin"_s, u"file.bin"_s}));
    for (const auto& download : {placed, moved}) {
        EXPECT_EQ(contents(download->path()), body);
        EXPECT_TRUE(links::isFromURLString(download->path(), server.url(u"/file.bin"_s)));
    }

    const auto waiting = add();
    {
        const FailingDisk disk(ENOSPC, 1234);
        run(waiting);
    }
    ASSERT_TRUE(waiting->isInterrupted());
    EXPECT_EQ(waiting->lastError()->underlying->code, ENOSPC);
    main.advance(31);
    ASSERT_TRUE(waitForStatus(*waiting, DQDownloadStatusDone));
    EXPECT_EQ(requestedRanges().back(), "bytes=1234-");
    EXPECT_EQ(contents(waiting->path()), body);
}

/// Of a known length, of an unknown one, and so small that it needs no partial file.
TEST_F(TransferTest, FileThatCannotBeMovedIsNotCompleteAndTriedAgain) {
    using Length = Reply::Length;
    struct Case {
        int errorNumber, size;
        Length length;
    };
    for (const Case& c :
         {Case{EIO, 600'000, Length::Announce}, Case{ENOSPC, 600'000, Length::Chunked},
          Case{EIO, 10'000, Length::Announce}}) {
        SCOPED_TRACE(c.errorNumber);
        const UnlinkableFiles noUnnamedFiles;
        const QByteArray body = patternedBytes(c.size);
        serve(body, {.length = c.length});
        auto download = add();
        std::optional<FailingRenames> disk(c.errorNumber);
        for (int attempt = 0; attempt < 2; ++attempt) {
            run(download);
            EXPECT_EQ(download->status(), DQDownloadStatusPaused);
            ASSERT_TRUE(download->lastError() && download->lastError()->underlying);
            EXPECT_EQ(download->lastError()->underlying->code, c.errorNumber);
            waitForDisks();
            EXPECT_EQ(downloadedNames(), QStringList{u"file.bin.orlop"_s});
        }
        disk.reset();
        const auto requests = server.requests().size();
        if (c.errorNumber == ENOSPC) {
            main.advance(31);
            ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
        } else {
            download = restarted(download);
            run(download);
        }
        EXPECT_EQ(server.requests().size(), requests);
        ASSERT_EQ(download->status(), DQDownloadStatusDone);
        EXPECT_EQ(contents(download->path()), body);
        waitForDisks();
        EXPECT_EQ(downloadedNames(), QStringList{u"file.bin"_s});
        QFile::remove(download->path());
    }
}

/// Behind an address that works once it could not be had again.
TEST_F(TransferTest, SmallFileThatIsStoppedWhileItIsPlacedIsNotFetchedAgain) {
    const QByteArray body = patternedBytes(10'000);
    serve(body);
    for (const bool isRemoved : {true, false}) {
        SCOPED_TRACE(isRemoved);
        const auto download = add();
        const auto requests = server.requests().size();
        {
            const HangingDisk disk(qPrintable(folder.path()));
            download->startDownload();
            ASSERT_TRUE(waitForBytes(*download, body.size()));
            ASSERT_TRUE(main.waitUntil([&] { return download->workers().empty(); }));
            ASSERT_EQ(download->status(), DQDownloadStatusDownloading);
            if (isRemoved)
                download->withdraw();
            else
                download->pause();
        }
        waitForDisks();
        if (isRemoved) {
            EXPECT_FALSE(QFile::exists(downloadedPath(u"file.bin"_s)));
            download->takeBack();
        }
        if (download->status() != DQDownloadStatusDone)
            run(download);
        ASSERT_EQ(download->status(), DQDownloadStatusDone);
        EXPECT_EQ(contents(download->path()), body);
        EXPECT_EQ(server.requests().size(), requests + 1);
        QFile::remove(download->path());
    }
}

/// One that hangs in a sync holds up what lies on it, and neither other disks nor us.
TEST_F(TransferTest, DiskThatHangsInASyncStopsNoOther) {
    const QTemporaryDir memory(u"/dev/shm/orlop-XXXXXX"_s);
    struct stat here {
    }, there{};
    if (!memory.isValid() || stat(qPrintable(memory.path()), &there) != 0 ||
        stat(qPrintable(folder.path()), &here) != 0 || here.st_dev == there.st_dev)
        GTEST_SKIP() << "there is only one disk";
    const QByteArray body = patternedBytes(3 << 20);
    serve(body);
    const auto stuck = add();
    const auto other = add();
    other->userSettings().set(keys::downloadFolder, memory.path());
    std::optional<HangingDisk> hanging(std::in_place, qPrintable(folder.path()));
    stuck->startDownload();
    other->startDownload();
    ASSERT_TRUE(waitForStatus(*other, DQDownloadStatusDone));
    EXPECT_EQ(contents(other->path()), body);
    ASSERT_TRUE(waitForBytes(*stuck, body.size()));
    EXPECT_EQ(stuck->status(), DQDownloadStatusDownloading);
    platform::Disks ended(main.loop);
    const auto begun = std::chrono::steady_clock::now();
    ended.ofDevice(here.st_dev).run([path = path(u"x"_s)] {
        static_cast<void>(platform::writeFileAtomically(path, "x"));
        QFile file(path);
        if (file.open(QIODevice::ReadWrite))
            fdatasync(file.handle());
    });
    EXPECT_FALSE(ended.finish(std::chrono::milliseconds(50))) << "waited for a disk that hangs";
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(5));
    hanging.reset();
    ASSERT_TRUE(waitForStatus(*stuck, DQDownloadStatusDone));
    EXPECT_EQ(contents(stuck->path()), body);
}

}  // namespace
}  // namespace engine_test
