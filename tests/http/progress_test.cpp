#include "http_fixture.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;

/// Adds up what it hears.
struct Indicator : http::HTTPProgressDelegate {
    std::int64_t received = 0, downloadSize = 0;
    int receivedCalls = 0;
    double maximum = 0;
    std::vector<double> values;

    void requestDidReceiveBytes(http::HTTPRequest&, std::int64_t amount) override {
        received += amount;
        ++receivedCalls;
    }
    void requestIncrementDownloadSizeBy(http::HTTPRequest&, std::int64_t amount) override {
        downloadSize += amount;
    }
    void setMaxValue(double value) override { maximum = value; }
    void setDoubleValue(double value) override { values.push_back(value); }
};

class ProgressTest : public HTTPTest {
protected:
    Indicator indicator;

    std::shared_ptr<http::HTTPRequest> download() {
        auto made = observedRequest(u"/file"_s);
        made->setDownloadProgressDelegate(&indicator);
        return made;
    }
};

TEST_F(ProgressTest, CountsBytesAndFillsTheIndicator) {
    server.serve("/file", {.body = support::patternedBytes(100'000), .stallAfter = 40'000});
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

TEST_F(ProgressTest, AnIndicatorThatHasGoneHearsNothing) {
    server.serve("/file", {.body = support::patternedBytes(100'000)});
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
