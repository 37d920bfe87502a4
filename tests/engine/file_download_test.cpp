#include <fcntl.h>
#include <sys/stat.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "engine/transfer/speed_limit.h"
#include "engine_fixture.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;

class FileDownloadTest : public EngineTest {
protected:
    DownloadPtr add() {
        return owner.add(platform::Url::fromFilePath(path(u"source.bin"_s)).absoluteString());
    }
    void run(const DownloadPtr& download) {
        download->startDownload();
        ASSERT_TRUE(waitForStatus(*download, finishedStatuses | DQDownloadStatusPaused));
    }
    /// A copy that was stopped after some of its blocks.
    DownloadPtr pausedCopy() {
        auto download = add();
        download->startDownload();
        constexpr int turns = 5;
        for (int turn = 0; turn < turns; ++turn) {
            waitForDisks();
            main.loop.runDue();
        }
        download->pause();
        const qint64 size = QFileInfo(primary()).size();
        EXPECT_TRUE(size > 0 && size < body.size()) << size;
        return download;
    }
    QString primary() const { return downloadedPath(u"source.bin.orlop/source.bin"_s); }

    const QByteArray body = support::patternedBytes(40 << 20);
};

TEST_F(FileDownloadTest, FileIsCopied) {
    write(path(u"source.bin"_s), body);
    const auto download = add();
    run(download);
    EXPECT_EQ(download->status(), DQDownloadStatusDone);
    EXPECT_EQ(contents(downloadedPath(u"source.bin"_s)), body);
    EXPECT_EQ(contents(path(u"source.bin"_s)), body);
    EXPECT_EQ(downloadedNames(), QStringList{u"source.bin"_s});
}

TEST_F(FileDownloadTest, CopyKeepsToItsLimit) {
    write(path(u"source.bin"_s), body);
    const auto download = add();
    constexpr qint64 limit = 10 << 20;
    download->speedLimit().set(limit);
    download->startDownload();
    const auto copied = [&] {
        // What is left of a second is taken in ever smaller pieces.
        for (int turn = 0; turn < 200; ++turn) {
            waitForDisks();
            main.loop.runDue();
        }
        return download->transfer().figures().total();
    };
    EXPECT_EQ(copied(), limit + 1) << "the first block counts as well";
    main.advance(1.1);
    EXPECT_EQ(copied(), 2 * (limit + 1));
    // Counts for what runs, and at once.
    download->speedLimit().set(0);
    main.advance(1);
    ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
    EXPECT_EQ(contents(downloadedPath(u"source.bin"_s)), body);
}

TEST_F(FileDownloadTest, CopyGoesOnInAFileOfItsOwn) {
    write(path(u"source.bin"_s), body);
    const auto download = pausedCopy();
    EXPECT_EQ(download->status(), DQDownloadStatusPaused);
    download->startDownload();
    ASSERT_TRUE(main.waitUntil([&] {
        return QFile::exists(primary() + u".orlop-rf-1"_s) ||
               download->status() == DQDownloadStatusDone;
    }));
    ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
    EXPECT_EQ(contents(downloadedPath(u"source.bin"_s)), body);
    EXPECT_EQ(downloadedNames(), QStringList{u"source.bin"_s});
}

TEST_F(FileDownloadTest, ChangedSourceIsCopiedAnew) {
    write(path(u"source.bin"_s), body);
    const auto download = pausedCopy();
    const QByteArray other = support::patternedBytes(body.size(), 2);
    write(path(u"source.bin"_s), other);
    run(download);
    EXPECT_EQ(contents(downloadedPath(u"source.bin"_s)), other);
}

/// As by a backup that is put back, or a copy that keeps its date.
TEST_F(FileDownloadTest, OlderSourceInItsPlaceIsCopiedAnew) {
    write(path(u"source.bin"_s), body);
    const auto download = pausedCopy();
    const QByteArray other = support::patternedBytes(body.size(), 2);
    write(path(u"source.bin"_s), other);
    const timespec longAgo[] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, QFile::encodeName(path(u"source.bin"_s)).constData(), longAgo, 0),
              0);
    download->addToQueue();
    ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
    EXPECT_EQ(contents(downloadedPath(u"source.bin"_s)), other);
}

TEST_F(FileDownloadTest, WhatIsNoFileFails) {
    QDir().mkpath(path(u"source.bin"_s));
    const auto folderDownload = add();
    run(folderDownload);
    EXPECT_TRUE(folderDownload->isInterrupted());
    QDir(path(u"source.bin"_s)).removeRecursively();
    const auto missing = add();
    run(missing);
    EXPECT_TRUE(missing->isInterrupted());
    ASSERT_EQ(mkfifo(QFile::encodeName(path(u"source.bin"_s)).constData(), 0600), 0);
    const auto pipe = add();
    run(pipe);
    EXPECT_TRUE(pipe->isInterrupted());
    EXPECT_EQ(downloadedNames(), QStringList());
}

}  // namespace
}  // namespace engine_test
