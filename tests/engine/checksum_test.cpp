#include <QCryptographicHash>
#include <QFile>
#include <utility>

#include "engine/record/checksum.h"
#include "engine/workers/digest_headers.h"
#include "engine_fixture.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;
using support::patternedBytes;
using support::Reply;

Checksum sumOf(const QByteArray& body, QCryptographicHash::Algorithm algorithm) {
    return {algorithm, QCryptographicHash::hash(body, algorithm)};
}

std::optional<Checksum> inHeaders(const std::map<QString, QString>& fields, qint64 status = 200) {
    WorkerResponse response;
    response.statusCode = status;
    response.headers.emplace();
    for (const auto& [name, value] : fields)
        response.headers->set(name, value);
    return checksumInHeaders(response);
}

TEST(ChecksumTest, IsReadFromWhatPeopleAndServersWrite) {
    const Checksum sha = sumOf("x", QCryptographicHash::Sha256);
    for (const QString& text : {sha.text(), sha.hex().toUpper(), u"SHA-256: "_s + sha.hex(),
                                u" sha256 "_s + sha.hex() + u'\n'})
        EXPECT_EQ(checksumFromText(text), sha) << text.toStdString();
    for (const QString& text : {u"md5="_s + sha.hex(), sha.hex().chopped(2), u"sha256="_s, u"abc"_s,
                                u"crc32="_s + sha.hex()})
        EXPECT_FALSE(checksumFromText(text)) << text.toStdString();
    EXPECT_EQ(checksumFromFragment(u"part=2&"_s + sha.text()), sha);
    EXPECT_FALSE(checksumFromFragment(sha.hex()));

    const Checksum md5 = sumOf("x", QCryptographicHash::Md5);
    const QString shaBase64 = QString::fromLatin1(sha.digest.toBase64());
    const QString md5Base64 = QString::fromLatin1(md5.digest.toBase64());
    const QString both = u"md5=:%1:, sha-256=:%2:;x=1"_s.arg(md5Base64, shaBase64);
    EXPECT_EQ(inHeaders({{u"Repr-Digest"_s, both}}, 206), sha);
    EXPECT_EQ(inHeaders({{u"Content-Digest"_s, both}}), sha);
    EXPECT_FALSE(inHeaders({{u"Content-Digest"_s, both}}, 206));
    EXPECT_EQ(inHeaders({{u"Digest"_s, u"MD5=%1,SHA-256=%2"_s.arg(md5Base64, shaBase64)}}), sha);
    EXPECT_EQ(inHeaders({{u"Content-MD5"_s, md5Base64}}), md5);
    EXPECT_FALSE(inHeaders({{u"Repr-Digest"_s, both}, {u"Content-Encoding"_s, u"gzip"_s}}));
    EXPECT_FALSE(inHeaders({{u"Repr-Digest"_s, u"sha-256=:"_s}}));
}

class ChecksumTransferTest : public TransferTest {
protected:
    ChecksumTransferTest() {
        environment.openWithApplication = [this](const QString& path, const QString&) {
            opened.append(path);
            return true;
        };
        owner.rules = {
            QVariantMap{{u"Extensions"_s, QStringList{u"bin"_s}}, {u"Application"_s, u"viewer"_s}}};
    }
    DownloadPtr expecting(const Checksum& checksum) {
        return add(u"/file.bin#"_s + checksum.text());
    }

    QStringList opened;
};

TEST_F(ChecksumTransferTest, RightFileIsVerifiedAndKeepsWhatItAddsUpTo) {
    // In a single block, and in many.
    for (const qsizetype length : {1000, 3'000'003}) {
        const QByteArray body = patternedBytes(length);
        serve(body);
        const Checksum checksum = sumOf(body, QCryptographicHash::Sha512);
        const auto download = expecting(checksum);
        run(download);
        ASSERT_EQ(download->status(), DQDownloadStatusDone);
        EXPECT_EQ(checksumResult(download->userSettings()), ChecksumResult::Verified);
        EXPECT_EQ(contents(download->path()), body);
        EXPECT_EQ(platform::extendedAttribute(download->path(), u"user.orlop.checksum"_s),
                  checksum.text().toLatin1());
    }
    EXPECT_EQ(opened.size(), 2);
}

TEST_F(ChecksumTransferTest, WrongFileFailsAndIsSeenByNobody) {
    for (const qsizetype length : {1000, 3'000'003}) {
        const QByteArray body = patternedBytes(length);
        serve(body);
        const Checksum wrong = sumOf("something else", QCryptographicHash::Sha256);
        const auto download = expecting(wrong);
        run(download);
        ASSERT_EQ(download->status(), DQDownloadStatusAborted);
        EXPECT_TRUE(download->isWrongFile());
        EXPECT_EQ(computedChecksum(download->userSettings()),
                  sumOf(body, QCryptographicHash::Sha256));
        EXPECT_FALSE(QFile::exists(downloadedPath(u"file.bin"_s)));
        EXPECT_EQ(opened, QStringList());
        clearQueue();
    }
}

TEST_F(ChecksumTransferTest, WrongFileIsFetchedAnewAndAMistypedChecksumCanBeMended) {
    const QByteArray body = patternedBytes(3'000'003);
    serve(QByteArray(body.size(), 'x'));
    const Checksum right = sumOf(body, QCryptographicHash::Sha1);
    run(expecting(right));
    serve(body);
    ASSERT_TRUE(owner.queue.retry(*downloads().front(), false));
    const DownloadPtr again = downloads().front();
    run(again);
    EXPECT_EQ(checksumResult(again->userSettings()), ChecksumResult::Verified);
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
    EXPECT_EQ(downloadedNames(), QStringList{u"file.bin"_s});

    QFile::remove(downloadedPath(u"file.bin"_s));
    clearQueue();
    const auto mistyped = expecting(sumOf("mistyped", QCryptographicHash::Sha1));
    run(mistyped);
    const std::size_t asked = server.requests().size();
    mistyped->expectChecksum(right);
    ASSERT_TRUE(owner.queue.retry(*mistyped, false));
    const DownloadPtr mended = downloads().front();
    run(mended);
    EXPECT_EQ(checksumResult(mended->userSettings()), ChecksumResult::Verified);
    EXPECT_EQ(server.requests().size(), asked);
}

TEST_F(ChecksumTransferTest, ServersWordCountsUnlessTheUserKnowsBetter) {
    const QByteArray body = patternedBytes(2'000'003);
    Reply how;
    how.headers = {
        {"Repr-Digest",
         "sha-256=:" + sumOf("other", QCryptographicHash::Sha256).digest.toBase64().toStdString() +
             ":"}};
    serve(body, how);
    const auto believing = add();
    run(believing);
    EXPECT_TRUE(believing->isWrongFile());
    clearQueue();
    const auto knowing = expecting(sumOf(body, QCryptographicHash::Md5));
    run(knowing);
    EXPECT_EQ(checksumResult(knowing->userSettings()), ChecksumResult::Verified);
}

TEST_F(ChecksumTransferTest, VerifyingIsTakenUpAgainByTheNextRun) {
    const QByteArray body = patternedBytes(3'000'003);
    Reply how;
    how.length = Reply::Length::Chunked;
    serve(body, how);
    const auto download = expecting(sumOf(body, QCryptographicHash::Sha256));
    // Ahead of the sum, which is told of on this thread too.
    bool wasPaused = false;
    owner.onChange = [&](DQDownload& changed) {
        if (changed.isVerifying() && !std::exchange(wasPaused, true))
            main.loop.post([&] { download->pause(); });
    };
    run(download);
    ASSERT_TRUE(wasPaused);
    ASSERT_EQ(download->status(), DQDownloadStatusPaused);
    const std::size_t asked = server.requests().size();
    const auto next = restarted(download);
    run(next);
    EXPECT_EQ(checksumResult(next->userSettings()), ChecksumResult::Verified);
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
    EXPECT_EQ(server.requests().size(), asked);
}

TEST_F(ChecksumTransferTest, FinishedFileIsVerifiedOnDemand) {
    const QByteArray body = patternedBytes(3'000'003);
    serve(body);
    const auto download = add();
    run(download);
    int told = 0;
    const auto verify = [&](const Checksum& checksum) {
        const int before = told;
        download->expectChecksum(checksum, [&told] { ++told; });
        EXPECT_TRUE(download->isVerifying());
        EXPECT_TRUE(main.waitUntil([&] { return told > before; }));
        return checksumResult(download->userSettings());
    };
    EXPECT_EQ(verify(sumOf(body, QCryptographicHash::Sha384)), ChecksumResult::Verified);
    EXPECT_EQ(verify(sumOf("other", QCryptographicHash::Md5)), ChecksumResult::Wrong);
    EXPECT_EQ(download->status(), DQDownloadStatusDone);
    QFile::remove(download->path());
    EXPECT_EQ(verify(sumOf(body, QCryptographicHash::Md5)), ChecksumResult::Unreadable);
}

}  // namespace
}  // namespace engine_test
