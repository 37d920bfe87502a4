#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <array>

#include "file_size_limit.h"
#include "http/content/http_data_compressor.h"
#include "http/content/http_data_decompressor.h"
#include "http/content/http_input_stream.h"
#include "http/http_request_error.h"
#include "http/shared/bandwidth_account.h"
#include "support/http_server.h"
#include "support/manual_clock.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using http::HTTPDataCompressor;
using http::HTTPDataDecompressor;

TEST(Compression, WhatGoesInComesOut) {
    for (const QByteArray& data : {QByteArray("a"), QByteArray(1'000'000, 'x'),
                                   support::patternedBytes(300'000), support::patternedBytes(3)}) {
        const auto packed = HTTPDataCompressor::compressData(data);
        ASSERT_FALSE(packed.error);
        EXPECT_EQ(packed.data.left(2), "\x1f\x8b");
        EXPECT_EQ(HTTPDataDecompressor::uncompressData(packed.data).data, data);
        EXPECT_EQ(HTTPDataDecompressor::uncompressData(packed.data + "trailing").data, data);
    }
    EXPECT_TRUE(HTTPDataCompressor::compressData({}).data.isEmpty());
    // qCompress writes zlib framing behind four bytes of length.
    EXPECT_EQ(HTTPDataDecompressor::uncompressData(qCompress("zlib").mid(4)).data, "zlib");
}

TEST(Compression, ChunksMakeOneStream) {
    const QByteArray data = support::patternedBytes(100'000);
    HTTPDataCompressor compressor;
    QByteArray packed;
    for (qsizetype start = 0; start < data.size(); start += 10'000)
        packed +=
            compressor
                .compressBytes(data.constData() + start, 10'000, start + 10'000 == data.size())
                .data;
    EXPECT_FALSE(compressor.closeStream());
    HTTPDataDecompressor decompressor;
    QByteArray unpacked;
    for (const char byte : packed)
        unpacked += decompressor.uncompressBytes(&byte, 1).data;
    EXPECT_EQ(unpacked, data);
}

TEST(Compression, DamageAndBombsAreErrors) {
    const auto damaged = HTTPDataDecompressor::uncompressData("not compressed");
    ASSERT_TRUE(damaged.error);
    EXPECT_TRUE(http::hasRequestErrorCode(*damaged.error, http::HTTPRequestErrorCode::Compression));
    EXPECT_EQ(damaged.error->text, u"Decompression of data failed with code -3"_s);
    EXPECT_TRUE(damaged.data.isEmpty());

    const QByteArray bomb = HTTPDataCompressor::compressData(QByteArray(2 << 20, '\0')).data;
    EXPECT_TRUE(HTTPDataDecompressor::uncompressData(bomb, 1 << 20).error);
    EXPECT_FALSE(HTTPDataDecompressor::uncompressData(bomb, 2 << 20).error);

    const QTemporaryDir folder;
    const QString packed = folder.filePath(u"packed"_s), target = folder.filePath(u"target"_s);
    QFile file(packed);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bomb);
    file.close();
    const auto error = HTTPDataDecompressor::uncompressDataFromFile(packed, target, 1 << 20);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->text, u"Decompression of data failed with code -4"_s);
    EXPECT_LE(QFileInfo(target).size(), 1 << 20);
    EXPECT_FALSE(HTTPDataDecompressor::uncompressDataFromFile(packed, target, 2 << 20));
}

TEST(Compression, FilesAndWhatGoesWrongWithThem) {
    const QTemporaryDir folder;
    const QString plain = folder.filePath(u"plain"_s);
    const QString packed = folder.filePath(u"packed"_s);
    const QString back = folder.filePath(u"back"_s);
    const auto writePlain = [&](qsizetype size) {
        QFile file(plain);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(support::patternedBytes(size));
    };
    writePlain(700'000);
    EXPECT_FALSE(HTTPDataCompressor::compressDataFromFile(plain, packed));
    EXPECT_FALSE(HTTPDataDecompressor::uncompressDataFromFile(packed, back));
    QFile unpacked(back);
    ASSERT_TRUE(unpacked.open(QIODevice::ReadOnly));
    EXPECT_EQ(unpacked.readAll(), support::patternedBytes(700'000));

    // No short read ever says that the last chunk was the last.
    writePlain(2 * 262144);
    const auto unfinished = HTTPDataCompressor::compressDataFromFile(plain, packed);
    ASSERT_TRUE(unfinished);
    EXPECT_EQ(unfinished->text, u"Compression of data failed with code -3"_s);

    const QString none = folder.filePath(u"none"_s);
    const QString nowhere = folder.filePath(u"none/file"_s);
    EXPECT_EQ(HTTPDataCompressor::compressDataFromFile(none, packed)->text,
              u"Compression of %1 failed the file does not exist"_s.arg(none));
    EXPECT_EQ(
        HTTPDataDecompressor::uncompressDataFromFile(plain, nowhere)->text,
        u"Decompression of %1 failed because we were to create a file at %2"_s.arg(plain, nowhere));
    EXPECT_EQ(
        HTTPDataCompressor::compressDataFromFile(folder.path(), packed)->text,
        u"Compression of %1 failed because we were unable to read from the source data file"_s.arg(
            folder.path()));
    const FileSizeLimit nearlyFull(1000);
    EXPECT_EQ(
        HTTPDataCompressor::compressDataFromFile(plain, packed)->text,
        u"Compression of %1 failed because we were unable to write to the destination data file "
        "at %2"_s.arg(plain, packed));
}

TEST(InputStream, ReadsThroughTheAccount) {
    support::ManualClock clock;
    http::BandwidthAccount account(clock);
    int throttled = 0;
    const QByteArray body = support::patternedBytes(5000);
    const auto stream =
        http::HTTPInputStream::inputStreamWithData(body, account, [&] { ++throttled; });
    std::array<char, 4096> buffer{};
    const auto read = [&] { return stream->read(buffer.data(), buffer.size()); };
    EXPECT_EQ(read().count, 4096);
    EXPECT_EQ(throttled, 0);
    EXPECT_EQ(read().count, 904);
    EXPECT_EQ(read().state, platform::HTTPBodySource::State::End);

    ASSERT_TRUE(stream->rewind());
    account.setMaxBandwidthPerSecond(10'000);  // Of which 5,000 are used.
    EXPECT_EQ(read().count, 2500);
    EXPECT_EQ(throttled, 1);
    account.incrementBandwidthUsedInLastSecond(10'000);
    EXPECT_EQ(read().count, 1);
    EXPECT_EQ(http::HTTPInputStream::inputStreamWithFileAtPath(u"/none"_s, account, {}), nullptr);
}

}  // namespace
}  // namespace http_test
