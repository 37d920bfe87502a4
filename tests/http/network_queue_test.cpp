#include "http/http_network_queue.h"

#include "http_fixture.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using http::HTTPNetworkQueue;
using support::Reply;

struct Dial : http::HTTPProgressDelegate {
    std::vector<double> values;
    void setDoubleValue(double value) override { values.push_back(value); }
};

class NetworkQueueTest : public HTTPTest {
protected:
    std::shared_ptr<HTTPNetworkQueue> queue = HTTPNetworkQueue::queue();
    std::vector<std::string> heard;
    Dial dial;

    NetworkQueueTest() {
        queue->setDelegate(&delegate);
        HTTPNetworkQueue::Selectors selectors;
        selectors.requestDidFinishSelector = [this](http::HTTPRequest& request) {
            heard.push_back("finished " + request.url().path().toStdString());
        };
        selectors.requestDidFailSelector = [this](http::HTTPRequest& request) {
            heard.push_back("failed " + request.url().path().toStdString());
        };
        selectors.queueDidFinishSelector = [this](HTTPNetworkQueue&) { heard.push_back("end"); };
        queue->setSelectors(std::move(selectors));
    }
    [[nodiscard]] bool waitForQueue() {
        return main.waitUntil([&] { return !heard.empty() && heard.back() == "end"; });
    }
    [[nodiscard]] std::size_t methodCount(const std::string& method) const {
        std::size_t count = 0;
        for (const auto& seen : server.requests())
            count += seen.method == method ? 1 : 0;
        return count;
    }
};

TEST_F(NetworkQueueTest, KnowsTheWholeBeforeItBegins) {
    server.serve("/a", {.body = support::patternedBytes(30'000)});
    server.serve("/b", {.body = support::patternedBytes(70'000)});
    queue->setShowAccurateProgress(true);
    queue->setDownloadProgressDelegate(&dial);
    queue->operationQueue().setMaxConcurrentOperationCount(2);
    queue->addOperation(request(u"/a"_s));
    queue->addOperation(request(u"/b"_s));
    EXPECT_EQ(queue->requestsCount(), 2);
    queue->go();
    ASSERT_TRUE(waitForQueue());
    EXPECT_EQ(heard.size(), 3U);
    EXPECT_EQ(methodCount("HEAD"), 2U);
    EXPECT_EQ(queue->totalBytesToDownload(), 100'000U);
    EXPECT_EQ(queue->bytesDownloadedSoFar(), 100'000U);
    EXPECT_EQ(dial.values.back(), 1);
    EXPECT_EQ(queue->requestsCount(), 0);

    const auto late = request(u"/a"_s);
    queue->addOperation(late);  // The queue runs already.
    ASSERT_TRUE(main.waitUntil([&] { return late->isFinished(); }));
    EXPECT_EQ(methodCount("HEAD"), 2U);
}

TEST_F(NetworkQueueTest, OneFailureEndsAllUnlessToldOtherwise) {
    for (const bool cancelsAll : {true, false}) {
        server.serve("/good", {.body = "good"});
        heard.clear();
        queue->operationQueue().setSuspended(true);
        queue->operationQueue().setMaxConcurrentOperationCount(1);
        queue->setShouldCancelAllRequestsOnFailure(cancelsAll);
        queue->addOperation(request(u"http://127.0.0.1:1/bad"_s));
        server.serve("/slow", {.stallHead = true});
        queue->addOperation(request(u"/slow"_s));
        queue->addOperation(request(u"/good"_s));
        queue->go();
        ASSERT_TRUE(main.waitUntil([&] { return !heard.empty(); }));
        EXPECT_EQ(heard.front(), "failed /bad");
        if (!cancelsAll) {
            ASSERT_TRUE(main.waitUntil([&] { return methodCount("GET") >= 1; }));
            ASSERT_TRUE(waitForRequests(server.requests().size()));
            server.serve("/slow", Reply());
            server.release();
        }
        ASSERT_TRUE(waitForQueue());
        EXPECT_EQ(heard.size(), 4U);
        EXPECT_EQ(std::count(heard.begin(), heard.end(), "finished /good"), cancelsAll ? 0 : 1);
        ASSERT_TRUE(main.waitUntil([&] { return queue->operationQueue().operationCount() == 0; }));
    }
}

TEST_F(NetworkQueueTest, ResetForgetsItsListenersFirst) {
    server.serve("/a", {.stallHead = true});
    queue->setShowAccurateProgress(true);
    const auto waiting = request(u"/a"_s);
    queue->addOperation(waiting);
    const auto copied = queue->copy();
    EXPECT_TRUE(copied->showAccurateProgress());
    EXPECT_EQ(copied->requestsCount(), 0);
    EXPECT_TRUE(copied->operationQueue().isSuspended());
    EXPECT_EQ(copied->delegate(), &delegate);

    queue->go();
    ASSERT_TRUE(waitForRequests(1));
    queue->reset();
    // Given up itself, or failed by its probe, whichever the request thread comes to first.
    ASSERT_TRUE(
        main.waitUntil([&] { return waiting->isCancelled() || waiting->error().has_value(); }));
    main.settle();
    EXPECT_TRUE(heard.empty());
    EXPECT_EQ(queue->delegate(), nullptr);
    EXPECT_TRUE(queue->operationQueue().isSuspended());
}

}  // namespace
}  // namespace http_test
