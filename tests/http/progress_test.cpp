#include <numeric>

#include "http_fixture.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using support::Reply;
using Amounts = std::vector<std::int64_t>;

/// Adds up what it hears.
struct Indicator : http::HTTPProgressDelegate {
    std::int64_t downloadSize = 0, uploadSize = 0;
    Amounts received, sent;
    double maximum = 0;
    std::vector<double> values;

    void requestDidReceiveBytes(http::HTTPRequest&, std::int64_t amount) override {
        received.push_back(amount);
    }
    void requestDidSendBytes(http::HTTPRequest&, std::int64_t amount) override {
        sent.push_back(amount);
    }
    void requestIncrementDownloadSizeBy(http::HTTPRequest&, std::int64_t amount) override {
        downloadSize += amount;
    }
    void requestIncrementUploadSizeBy(http::HTTPRequest&, std::int64_t amount) override {
        uploadSize += amount;
    }
    void setMaxValue(double value) override { maximum = value; }
    void setDoubleValue(double value) override { values.push_back(value); }
};

class ProgressTest : public HTTPTest {
protected:
    Indicator indicator;

    void serveFile(Reply reply = {}) {
        reply.body = support::patternedBytes(100'000);
        server.serve("/file", reply);
    }
    std::shared_ptr<http::HTTPRequest> download() {
        auto made = observedRequest(u"/file"_s);
        made->setDownloadProgressDelegate(&indicator);
        return made;
    }
    std::shared_ptr<http::HTTPRequest> upload(const QByteArray& body) {
        auto made = observedRequest(u"/post"_s);
        made->setUploadProgressDelegate(&indicator);
        made->appendPostData(body);
        return made;
    }
};

TEST_F(ProgressTest, CountsBytesAndFillsTheIndicator) {
    serveFile({.stallAfter = 40'000});
    std::vector<std::pair<std::int64_t, std::uint64_t>> amounts;
    http::RequestBlocks blocks;
    blocks.bytesReceivedBlock = [&](std::int64_t amount, std::uint64_t total) {
        amounts.emplace_back(amount, total);
    };
    const auto request = download();
    request->setBlocks(std::move(blocks));
    request->startAsynchronous();
    ASSERT_TRUE(main.waitUntil([&] { return request->totalBytesRead() == 40'000; }));
    advance(0.5);
    EXPECT_EQ(indicator.received, Amounts{40'000});  // Nothing new, nothing told a second time.
    server.release();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(indicator.received, (Amounts{40'000, 60'000}));
    EXPECT_EQ(indicator.downloadSize, 100'000);
    EXPECT_EQ(indicator.maximum, 1.0);
    EXPECT_EQ(indicator.values, (std::vector<double>{0, 0.4, 1}));
    EXPECT_EQ(amounts, (std::vector<std::pair<std::int64_t, std::uint64_t>>{{40'000, 100'000},
                                                                            {60'000, 100'000}}));
}

TEST_F(ProgressTest, WhatCannotOrNeedNotBeMeasuredCountsOne) {
    struct Case {
        Reply::Length length;
        bool isAccurate;
        std::int64_t size;
    };
    for (const auto& [length, isAccurate, size] :
         {Case{Reply::Length::Chunked, true, 1}, Case{Reply::Length::None, true, 1},
          Case{Reply::Length::Announce, false, 0}}) {
        SCOPED_TRACE(static_cast<int>(length));
        serveFile({.length = length});
        indicator = {};
        const auto request = download();
        request->setShowAccurateProgress(isAccurate);
        run(request);
        EXPECT_EQ(indicator.received, Amounts{1});
        EXPECT_EQ(indicator.downloadSize, size);
    }
}

TEST_F(ProgressTest, AResumedPartCountsAsReceived) {
    serveFile();
    write(temporaryFile(u"part"_s), support::patternedBytes(100'000).left(30'000));
    const auto request = download();
    request->setDownloadDestinationPath(temporaryFile(u"done"_s));
    request->setTemporaryFileDownloadPath(temporaryFile(u"part"_s));
    request->setAllowResumeForFileDownloads(true);
    run(request);
    EXPECT_EQ(indicator.downloadSize, 100'000);
    EXPECT_EQ(std::accumulate(indicator.received.begin(), indicator.received.end(), 0), 100'000);
    EXPECT_EQ(indicator.values.back(), 1);
}

TEST_F(ProgressTest, TheUploadsFirstPartIsNotMeasured) {
    const qsizetype size = 2'000'000;
    const auto request = upload(support::patternedBytes(size));
    // The limit lets one part through before the first look, the rest after it.
    http::HTTPRequest::setMaxBandwidthPerSecond(100'000);
    request->startAsynchronous();
    ASSERT_TRUE(waitForRest());
    advance(0.25);
    const std::int64_t measured = indicator.uploadSize;
    EXPECT_GT(measured, 0);
    EXPECT_LT(measured, size);
    EXPECT_TRUE(indicator.sent.empty());
    http::HTTPRequest::setMaxBandwidthPerSecond(0);
    advance(0.25);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(std::accumulate(indicator.sent.begin(), indicator.sent.end(), 0), measured);
    EXPECT_EQ(indicator.uploadSize, measured);
    EXPECT_EQ(indicator.values.front(), 0);
    EXPECT_EQ(indicator.values.back(), 1);
}

TEST_F(ProgressTest, ABodySentTwiceIsTakenBackFirst) {
    int asked = 0;
    server.handle(
        "/post", [&](const support::ReceivedRequest&) { return Reply{.stallHead = asked++ == 0}; });
    const auto request = upload("0123456789");
    request->setNumberOfTimesToRetryOnTimeout(1);
    request->startAsynchronous();
    ASSERT_TRUE(waitForRequests(1));
    advance(0.5);
    EXPECT_EQ(indicator.sent, Amounts{10});
    // What cannot be seen moving is given half as long again.
    advance(10.5);
    EXPECT_EQ(request->retryCount(), 0);
    advance(5);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(request->retryCount(), 1);
    EXPECT_EQ(indicator.sent, (Amounts{10, -10, 10}));
}

TEST_F(ProgressTest, AnIndicatorThatHasGoneHearsNothing) {
    serveFile();
    const auto request = download();
    request->startAsynchronous();
    ASSERT_TRUE(waitForThread([&] { return request->complete(); }));
    request->setDownloadProgressDelegate(nullptr);
    const std::size_t before = indicator.values.size();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(indicator.values.size(), before);
    EXPECT_TRUE(indicator.received.empty());
}

}  // namespace
}  // namespace http_test
