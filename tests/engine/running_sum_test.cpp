#include "engine/transfer/running_sum.h"

#include <QFile>

#include "engine/acceleration/acceleration_settings.h"
#include "engine/finishing/verification.h"
#include "engine/settings.h"
#include "engine_fixture.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;
using support::patternedBytes;
using support::Reply;

constexpr QCryptographicHash::Algorithm sha256 = QCryptographicHash::Sha256;
constexpr qint64 mebibyte = qint64{1} << 20;

QByteArray digestOf(const QByteArray& bytes) {
    platform::Digest digest(sha256);
    digest.add(bytes);
    return digest.result();
}

class RunningSumTest : public EngineTest {
protected:
    void follow(qint64 length) {
        sum.follow(file, sha256, length);
        waitForDisks();
    }
    FileSum finish() {
        FileSum result = sumOfFile(file, sha256, sum.take(), false);
        EXPECT_EQ(result.checksum, (Checksum{sha256, digestOf(contents(file))}));
        return result;
    }

    const QString file = path(u"file"_s);
    const QByteArray body = patternedBytes(45 * mebibyte);
    RunningSum sum{disks};
};

TEST_F(RunningSumTest, OnlyTheRestIsReadAtTheEnd) {
    write(file, body);
    // More than is read at once, and then less than is worth a turn.
    follow(40 * mebibyte);
    follow(41 * mebibyte);
    EXPECT_EQ(sum.nextLength(), 45 * mebibyte);
    EXPECT_EQ(finish().before, 40 * mebibyte);
    EXPECT_EQ(finish().before, 0);
}

TEST_F(RunningSumTest, NothingCountsThatMayNotLieInTheFile) {
    const auto other = [this] {
        QByteArray bytes = body;
        bytes[0] = static_cast<char>(~bytes[0]);
        return bytes;
    };
    const auto begin = [this] {
        QFile::remove(file);
        write(file, body);
        follow(20 * mebibyte);
    };
    // Another file took its place.
    begin();
    ASSERT_TRUE(QFile::rename(file, path(u"kept"_s)));
    write(file, other());
    EXPECT_EQ(finish().before, 0);
    // It was cut, and is shorter than what was read of it.
    begin();
    ASSERT_TRUE(QFile::resize(file, mebibyte));
    EXPECT_EQ(finish().before, 0);
    // It was cut before it was read.
    begin();
    ASSERT_TRUE(QFile::resize(file, 21 * mebibyte));
    follow(30 * mebibyte);
    write(file, other());
    EXPECT_EQ(finish().before, 0);
    // It began again.
    begin();
    write(file, other());
    follow(8 * mebibyte);
    EXPECT_EQ(finish().before, 8 * mebibyte);
    begin();
    sum.forget();
    write(file, other());
    EXPECT_EQ(finish().before, 0);
}

class SumOfTransferTest : public TransferTest {
protected:
    DownloadPtr expecting(const QByteArray& whole) {
        return add(u"/file.bin#"_s + Checksum{sha256, digestOf(whole)}.text());
    }
    /// Of the bytes of the last download, how many were added up as they came. Nothing: it had no
    /// sum.
    std::optional<qint64> addedUp() const {
        constexpr QLatin1StringView words("but for what follows byte ");
        const QStringList lines = log.lines().filter(words);
        if (lines.isEmpty())
            return {};
        return lines.last().sliced(lines.last().indexOf(words) + words.size()).toLongLong();
    }
    /// Waits until all but the last bytes have come and been looked at, and then for the end.
    void finish(const DownloadPtr& download, qint64 stalledAt) {
        // Of a fast stream the last mebibyte may not have been told of yet.
        ASSERT_TRUE(waitForBytes(*download, stalledAt - mebibyte));
        waitForDisks();
        server.release();
        ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
    }
    void stall(std::size_t after, const QByteArray& served) {
        Reply how;
        how.stallAfter = after;
        serve(served, how);
    }

    const QByteArray body = patternedBytes(24 * mebibyte);
};

TEST_F(SumOfTransferTest, FileIsAddedUpWhileItComes) {
    stall(20 * mebibyte, body);
    const DownloadPtr download = expecting(body);
    download->startDownload();
    finish(download, 20 * mebibyte);
    EXPECT_EQ(checksumResult(download->userSettings()), ChecksumResult::Verified);
    EXPECT_GE(addedUp(), 12 * mebibyte);
}

TEST_F(SumOfTransferTest, ServersWordIsEnoughAndWithoutAnyNothingIsAddedUp) {
    Reply how;
    how.stallAfter = 20 * mebibyte;
    serve(body, how);
    DownloadPtr download = add();
    download->startDownload();
    ASSERT_TRUE(waitForBytes(*download, 19 * mebibyte));
    EXPECT_EQ(download->transfer().takeSum(), nullptr);
    server.release();
    ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
    EXPECT_EQ(addedUp(), std::nullopt);

    how.headers = {{"Repr-Digest", "sha-256=:" + digestOf("else").toBase64().toStdString() + ":"}};
    serve(body, how);
    download = add();
    download->startDownload();
    finish(download, 20 * mebibyte);
    EXPECT_TRUE(download->isWrongFile());
    EXPECT_GE(addedUp(), 12 * mebibyte);
}

TEST_F(SumOfTransferTest, ResumeReadsWhatWasThereAndGoesOn) {
    DownloadPtr download = expecting(body);
    stall(16 * mebibyte, body);
    download->startDownload();
    ASSERT_TRUE(waitForBytes(*download, 15 * mebibyte));
    download->pause();
    server.release();
    download = restarted(download);
    // While nobody was looking.
    const QString partial = download->intermediateDownloadTargetPath();
    QByteArray changed = contents(partial);
    changed[5] = static_cast<char>(~changed[5]);
    write(partial, changed);
    stall(4 * mebibyte, body);
    download->startDownload();
    finish(download, 20 * mebibyte);
    EXPECT_TRUE(download->isWrongFile());
    EXPECT_GE(addedUp(), 12 * mebibyte);
}

TEST_F(SumOfTransferTest, AnotherVersionIsAddedUpFromItsFirstByte) {
    const QByteArray older = patternedBytes(24 * mebibyte, 7);
    stall(16 * mebibyte, older);
    const DownloadPtr download = expecting(body);
    download->startDownload();
    ASSERT_TRUE(waitForBytes(*download, 15 * mebibyte));
    waitForDisks();
    serve(body);
    server.dropConnections();
    ASSERT_TRUE(
        main.waitUntil([&] { return matchesStatusMask(download->status(), ~activeStatuses); }));
    server.release();
    run(download);
    EXPECT_EQ(download->status(), DQDownloadStatusDone);
    EXPECT_EQ(checksumResult(download->userSettings()), ChecksumResult::Verified);
    EXPECT_EQ(contents(download->path()), body);
}

TEST_F(SumOfTransferTest, SplitFileIsAddedUpAsFarAsItHasNoGap) {
    AccelerationSettings(*defaults).setAccelerates(true);
    set(settings::accelerationMinimumFractionSize, 6 * mebibyte);
    for (const bool areInPlace : {true, false}) {
        SCOPED_TRACE(areInPlace);
        set(settings::accelerationPartsInPlace, areInPlace);
        server.handle("/file.bin", [this](const support::ReceivedRequest& request) {
            Reply served = reply(body);
            const std::string range = request.header("Range").value_or("");
            // The third part's end is wanting.
            if (range.starts_with("bytes=" + std::to_string(12 * mebibyte)))
                served.stallAfter = 5 * mebibyte;
            return served;
        });
        set(settings::accelerationSharesSlowParts, false);
        const DownloadPtr download = expecting(body);
        download->startDownload();
        finish(download, 23 * mebibyte);
        ASSERT_EQ(download->status(), DQDownloadStatusDone);
        EXPECT_EQ(checksumResult(download->userSettings()), ChecksumResult::Verified);
        const qint64 first = areInPlace ? 17 * mebibyte : 6 * mebibyte;
        EXPECT_GT(addedUp(), first - 6 * mebibyte);
        QFile::remove(download->path());
    }
}

}  // namespace
}  // namespace engine_test
