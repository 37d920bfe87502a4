#include "http_fixture.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using support::Reply;

/// Adds up what it hears.
struct Indicator : http::HTTPProgressDelegate {
    std::int64_t received = 0, sent = 0, downloadSize = 0, uploadSize = 0;
    int receivedCalls = 0;
    double maximum = 0;
    std::vector<double> values;

    void requestDidReceiveBytes(http::HTTPRequest&, std::int64_t amount) override {
        received += amount;
        ++receivedCalls;
    }
    void requestDidSendBytes(http::HTTPRequest&, std::int64_t amount) override { sent += amount; }
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

    void serveFile(Reply reply, qsizetype size = 100'000) {
        reply.body = support::patternedBytes(size);
        server.serve("/file", reply);
    }
    std::shared_ptr<http::HTTPRequest> download() {
        auto made = observedRequest(u"/file"_s);
        made->setDownloadProgressDelegate(&indicator);
        return made;
    }
};

TEST_F(ProgressTest, CountsBytesAndFillsTheIndicator) {
    Reply reply{.stallAfter = 40'000};
    serveFile(reply);
    std::vector<std::pair<std::int64_t, std::uint64_t>> amounts;
    http::RequestBlocks blocks;
    blocks.bytesReceivedBlock = [&](std::int64_t amount, std::uint64_t total) {
        amounts.emplace_back(amount, total);
    };
    const auto request = download();
    request->setBlocks(std::move(blocks));
    request->startAsynchronous();
    ASSERT_TRUE(main.waitUntil([&] { return request->totalBytesRead() == 40'000; }));
    advance(0.25);
    EXPECT_EQ(indicator.received, 40'000);
    advance(0.25);
    EXPECT_EQ(indicator.receivedCalls, 1);  // Nothing new, nothing told.
    server.release();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(indicator.received, 100'000);
    EXPECT_EQ(indicator.downloadSize, 100'000);
    EXPECT_EQ(indicator.maximum, 1.0);
    EXPECT_EQ(indicator.values, (std::vector<double>{0, 0.4, 1}));
    EXPECT_EQ(amounts, (std::vector<std::pair<std::int64_t, std::uint64_t>>{{40'000, 100'000},
                                                                            {60'000, 100'000}}));
}

TEST_F(ProgressTest, AnUnknownSizeCountsOne) {
    Reply reply{.length = Reply::Length::Chunked};
    serveFile(reply);
    run(download());
    EXPECT_EQ(indicator.received, 1);
    EXPECT_EQ(indicator.downloadSize, 1);
    EXPECT_EQ(indicator.receivedCalls, 1);
}

TEST_F(ProgressTest, WithoutAccuracyOneIsToldAtTheEnd) {
    serveFile({});
    const auto request = download();
    request->setShowAccurateProgress(false);
    run(request);
    EXPECT_EQ(indicator.received, 1);
    EXPECT_EQ(indicator.downloadSize, 0);
}

TEST_F(ProgressTest, LengthsAreBookedAsTheyAreWritten) {
    struct Case {
        const char* length;
        std::uint64_t booked;
    };
    for (const auto& [length, booked] : {Case{"010", 8}, Case{"10", 10}}) {
        server.serve("/file", {.raw = QByteArray("HTTP/1.1 200 OK\r\nContent-Length: ") + length +
                                      "\r\n\r\n0123456789"});
        const auto request = download();
        run(request);
        EXPECT_EQ(request->contentLength(), booked);
        EXPECT_EQ(request->totalBytesRead(), 10U);
    }
}

TEST_F(ProgressTest, AResumedPartCountsAsReceived) {
    serveFile({});
    write(temporaryFile(u"part"_s), support::patternedBytes(100'000).left(30'000));
    const auto request = download();
    request->setDownloadDestinationPath(temporaryFile(u"done"_s));
    request->setTemporaryFileDownloadPath(temporaryFile(u"part"_s));
    request->setAllowResumeForFileDownloads(true);
    run(request);
    EXPECT_EQ(indicator.downloadSize, 100'000);
    EXPECT_EQ(indicator.received, 100'000);
    EXPECT_EQ(indicator.values.back(), 1);
}

TEST_F(ProgressTest, TheUploadsFirstPartIsNotMeasured) {
    const auto request = observedRequest(u"/post"_s);
    request->setUploadProgressDelegate(&indicator);
    const qsizetype size = 2'000'000;
    request->appendPostData(support::patternedBytes(size));
    // The limit lets one part through before the first look, the rest after it.
    http::HTTPRequest::setMaxBandwidthPerSecond(100'000);
    request->startAsynchronous();
    ASSERT_TRUE(waitForRest());
    advance(0.25);
    const std::int64_t buffer = size - indicator.uploadSize;
    EXPECT_GT(buffer, 0);
    EXPECT_EQ(indicator.sent, 0);
    http::HTTPRequest::setMaxBandwidthPerSecond(0);
    advance(0.25);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(indicator.sent, size - buffer);
    EXPECT_EQ(indicator.uploadSize, size - buffer);
    EXPECT_EQ(indicator.values.front(), 0);
    EXPECT_EQ(indicator.values.back(), 1);
}

TEST_F(ProgressTest, ABodySentTwiceIsTakenBackFirst) {
    int asked = 0;
    server.handle(
        "/post", [&](const support::ReceivedRequest&) { return Reply{.stallHead = asked++ == 0}; });
    const auto request = observedRequest(u"/post"_s);
    request->setUploadProgressDelegate(&indicator);
    request->setNumberOfTimesToRetryOnTimeout(1);
    request->appendPostData("0123456789");
    std::vector<std::int64_t> amounts;
    http::RequestBlocks blocks;
    blocks.bytesSentBlock = [&](std::int64_t amount, std::uint64_t) { amounts.push_back(amount); };
    request->setBlocks(std::move(blocks));
    request->startAsynchronous();
    ASSERT_TRUE(waitForRequests(1));
    advance(0.5);
    EXPECT_EQ(indicator.sent, 10);
    advance(16);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(amounts, (std::vector<std::int64_t>{10, -10, 10}));
    EXPECT_EQ(indicator.sent, 10);
}

TEST_F(ProgressTest, AnIndicatorThatHasGoneHearsNothing) {
    serveFile({});
    const auto request = download();
    request->startAsynchronous();
    ASSERT_TRUE(waitForThread([&] { return request->complete(); }));
    request->setDownloadProgressDelegate(nullptr);
    const std::size_t before = indicator.values.size();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(indicator.values.size(), before);
    EXPECT_EQ(indicator.received, 0);
}

}  // namespace
}  // namespace http_test
