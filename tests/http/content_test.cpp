#include "http/content/content_type.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <array>

#include "http/content/http_data_compressor.h"
#include "http/content/http_data_decompressor.h"
#include "http/content/http_input_stream.h"
#include "http/http_request.h"
#include "http/http_request_error.h"
#include "http/shared/bandwidth_account.h"
#include "support/http_server.h"
#include "support/manual_clock.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using http::HTTPDataCompressor;
using http::HTTPDataDecompressor;

TEST(ContentType, GivesTypeAndEncoding) {
    struct Case {
        QString header, type;
        std::optional<http::StringEncoding> encoding;
    };
    const std::vector<Case> cases{
        {u""_s, u""_s, {}},
        {u" text/html "_s, u"text/html"_s, {}},
        {u"text/html;"_s, u"text/html"_s, {}},
        {u"text/html ; charset=UTF-8"_s, u"text/html"_s, http::utf8StringEncoding},
        {u"text/html;CHARSET=us-ascii; x=y"_s, u"text/html"_s, http::asciiStringEncoding},
        {u"text/html; x=y; charset= latin1"_s, u"text/html"_s, http::latin1StringEncoding},
        {u"text/html; charset=\"utf-8\""_s, u"text/html"_s, {}},
        {u"text/html; charset=utf-8 "_s, u"text/html"_s, {}},
        {u"text/html; charset=klingon"_s, u"text/html"_s, {}},
        {u"text/html; charset="_s, u"text/html"_s, {}},
        {u";charset=utf-8"_s, u";charset=utf-8"_s, {}},
    };
    for (const auto& [header, type, encoding] : cases) {
        const auto parsed = http::parseContentType(header);
        EXPECT_EQ(parsed.mimeType, type) << header.toStdString();
        EXPECT_EQ(parsed.encoding, encoding) << header.toStdString();
    }
}

TEST(HTTPDate, ReadsWhatServersWrite) {
    const auto read = [](const QString& text) {
        const auto date = http::HTTPRequest::dateFromRFC1123String(text);
        return date ? date->toString(Qt::ISODate) : u"none"_s;
    };
    EXPECT_EQ(read(u"Sun, 06 Nov 1994 08:49:37 GMT"_s), u"1994-11-06T08:49:37Z"_s);
    EXPECT_EQ(read(u"06 Nov 1994 08:49:37 GMT"_s), u"1994-11-06T08:49:37Z"_s);
    EXPECT_EQ(read(u"Sun, 06 Nov 1994 08:49 GMT"_s), u"1994-11-06T08:49:00Z"_s);
    EXPECT_EQ(read(u" 6 nov 1994 08:49 EST "_s), u"1994-11-06T13:49:00Z"_s);
    EXPECT_EQ(read(u"06 Nov 1994 08:49:37 +0200"_s), u"1994-11-06T06:49:37Z"_s);
    EXPECT_EQ(read(u"Sunday, 06-Nov-94 08:49:37 GMT"_s), u"1994-11-06T08:49:37Z"_s);
    EXPECT_EQ(read(u"Sun Nov  6 08:49:37 1994"_s), u"1994-11-06T08:49:37Z"_s);
    EXPECT_EQ(read(u"Sun Nov 16 08:49:37 1994"_s), u"1994-11-16T08:49:37Z"_s);
    EXPECT_EQ(read(u"Sun, 06 Nov 94 08:49:37 GMT"_s), u"1994-11-06T08:49:37Z"_s);
    // More than fifty years ahead is behind us.
    const int year = QDate::currentDate().year();
    const auto shortYear = [](int of) { return QString::number(of % 100).rightJustified(2, u'0'); };
    EXPECT_EQ(read(u"Friday, 01-Jan-%1 00:00:00 GMT"_s.arg(shortYear(year + 49))),
              u"%1-01-01T00:00:00Z"_s.arg(year + 49));
    EXPECT_EQ(read(u"Friday, 01-Jan-%1 00:00:00 GMT"_s.arg(shortYear(year + 52))),
              u"%1-01-01T00:00:00Z"_s.arg(year - 48));
    for (const auto& text :
         {u"Sunday, 31-Feb-94 08:49:37 GMT"_s, u"Sun Feb 31 08:49:37 1994"_s,
          u"Sun, 31 Feb 1994 08:49:37 GMT"_s, u"Sunday, 06-Nov-94 25:49:37 GMT"_s,
          u"Sun, 06 Nov 094 08:49:37 GMT"_s, u"Sunday, 06-Nov-94"_s, u"Sun Nov  6 08:49:37"_s})
        EXPECT_EQ(read(text), u"none"_s) << text.toStdString();
    for (const auto& text : {u""_s, u"0"_s, u"-1"_s, u"yesterday"_s, u"1994-11-06T08:49:37Z"_s,
                             u"Sun, 06 Nov 1994"_s, u"Sun, 06 Nov 1994 08:49:37 GMT x"_s})
        EXPECT_EQ(read(text), u"none"_s) << text.toStdString();
}

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
