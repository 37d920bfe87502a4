#include <cerrno>

#include "engine/settings.h"
#include "engine_fixture.h"
#include "failing_disk.h"
#include "links/paths/file_attributes.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;
using support::patternedBytes;

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

}  // namespace
}  // namespace engine_test
