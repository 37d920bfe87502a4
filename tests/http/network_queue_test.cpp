#include "http/extras/http_network_queue.h"

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
        queue->setDownloadProgressDelegate(&dial);
        queue->setSelectors(selectors());
        server.serve("/a", {.body = support::patternedBytes(30'000)});
        server.serve("/b", {.body = support::patternedBytes(70'000)});
        server.serve("/slow", {.stallHead = true});
    }
    HTTPNetworkQueue::Selectors selectors() {
        const auto noting = [this](const std::string& event) {
            return [this, event](http::HTTPRequest& request) {
                heard.push_back(event + request.url().path().toStdString());
            };
        };
        HTTPNetworkQueue::Selectors made;
        made.requestDidFinishSelector = noting("finished ");
        made.requestDidFailSelector = noting("failed ");
        made.queueDidFinishSelector = [this](HTTPNetworkQueue&) { heard.emplace_back("end"); };
        return made;
    }
    std::shared_ptr<http::HTTPRequest> add(const QString& path) {
        auto made = request(path);
        EXPECT_FALSE(queue->addOperation(made));
        return made;
    }
    void runToTheEnd() {
        queue->go();
        ASSERT_TRUE(main.waitUntil([&] { return !heard.empty() && heard.back() == "end"; }));
    }
    [[nodiscard]] long methodCount(const std::string& method) const {
        const auto seen = server.requests();
        return std::count_if(seen.begin(), seen.end(),
                             [&](const auto& request) { return request.method == method; });
    }
};

TEST_F(NetworkQueueTest, KnowsTheWholeBeforeItBegins) {
    queue->setShowAccurateProgress(true);
    queue->operationQueue().setMaxConcurrentOperationCount(2);
    add(u"/a"_s);
    add(u"/b"_s);
    EXPECT_EQ(queue->requestsCount(), 2);
    runToTheEnd();
    EXPECT_EQ(heard.size(), 3U);
    EXPECT_EQ(methodCount("HEAD"), 2);
    EXPECT_EQ(queue->totalBytesToDownload(), 100'000U);
    EXPECT_EQ(queue->bytesDownloadedSoFar(), 100'000U);
    EXPECT_EQ(dial.values.front(), 0);
    EXPECT_TRUE(std::is_sorted(dial.values.begin(), dial.values.end()));
    EXPECT_EQ(dial.values.back(), 1);
    EXPECT_EQ(queue->requestsCount(), 0);

    const auto late = add(u"/a"_s);  // The queue runs already.
    ASSERT_TRUE(main.waitUntil([&] { return late->isFinished(); }));
    EXPECT_EQ(methodCount("HEAD"), 2);
}

TEST_F(NetworkQueueTest, WithoutAccuracyEachRequestCountsOne) {
    for (int i = 0; i < 4; ++i)
        add(u"/a"_s);
    runToTheEnd();
    EXPECT_EQ(methodCount("HEAD"), 0);
    EXPECT_EQ(queue->totalBytesToDownload(), 4U);
    EXPECT_EQ(dial.values, (std::vector<double>{0, 0.25, 0.5, 0.75, 1}));
}

TEST_F(NetworkQueueTest, AnEmptyGzipStreamIsNotBelieved) {
    server.handle("/gzip", [](const support::ReceivedRequest& seen) {
        return Reply{.body = support::patternedBytes(seen.method == "HEAD" ? 20 : 5000)};
    });
    queue->setShowAccurateProgress(true);
    const auto one = add(u"/gzip"_s);
    runToTheEnd();
    EXPECT_FALSE(one->showAccurateProgress());
    EXPECT_EQ(queue->totalBytesToDownload(), 1U);
    EXPECT_EQ(queue->bytesDownloadedSoFar(), 1U);
}

TEST_F(NetworkQueueTest, OneFailureEndsAllUnlessToldOtherwise) {
    for (const bool cancelsAll : {true, false}) {
        SCOPED_TRACE(cancelsAll);
        heard.clear();
        queue->operationQueue().setSuspended(true);
        queue->operationQueue().setMaxConcurrentOperationCount(1);
        queue->setShouldCancelAllRequestsOnFailure(cancelsAll);
        add(u"http://127.0.0.1:1/bad"_s);
        // Held up, so that only cancelling can end it while the failure is told.
        add(cancelsAll ? u"/slow"_s : u"/b"_s);
        add(u"/a"_s);
        runToTheEnd();
        EXPECT_EQ(heard.size(), 4U);
        EXPECT_EQ(heard.front(), "failed /bad");
        EXPECT_EQ(std::count(heard.begin(), heard.end(), "finished /a"), cancelsAll ? 0 : 1);
        ASSERT_TRUE(main.waitUntil([&] { return queue->operationQueue().operationCount() == 0; }));
    }
}

TEST_F(NetworkQueueTest, AFailedProbeFailsItsRequestOnce) {
    queue->setShowAccurateProgress(true);
    const auto doomed = add(u"http://127.0.0.1:1/a"_s);
    runToTheEnd();
    EXPECT_EQ(heard, (std::vector<std::string>{"failed /a", "end"}));
    EXPECT_EQ(errorCode(*doomed), 1);
    ASSERT_TRUE(main.waitUntil([&] { return doomed->isFinished(); }));
}

TEST_F(NetworkQueueTest, TakesRedirectsOverOnlyIfItCan) {
    server.serve("/moved", {.status = 302, .headers = {{"Location", "/b"}}});
    EXPECT_FALSE(queue->capabilities().confirmsRedirects);
    auto all = selectors();
    all.requestWillRedirectSelector = [this](http::HTTPRequest& request, const platform::Url& url) {
        heard.emplace_back("redirect");
        request.redirectToURL(url);
    };
    queue->setSelectors(std::move(all));
    EXPECT_TRUE(queue->capabilities().confirmsRedirects);
    add(u"/moved"_s);
    runToTheEnd();
    EXPECT_EQ(heard, (std::vector<std::string>{"redirect", "finished /b", "end"}));
}

TEST_F(NetworkQueueTest, ResetForgetsItsListenersFirst) {
    queue->setShowAccurateProgress(true);
    const auto waiting = add(u"/slow"_s);
    queue->go();
    ASSERT_TRUE(waitForRequests(1));
    queue->reset();
    EXPECT_EQ(queue->delegate(), nullptr);
    queue->setDelegate(&delegate);  // Whoever comes next is not told of what was before.
    // Given up itself, or failed by its probe, whichever the request thread comes to first.
    ASSERT_TRUE(
        main.waitUntil([&] { return waiting->isCancelled() || waiting->error().has_value(); }));
    main.settle();
    EXPECT_TRUE(heard.empty());
    EXPECT_TRUE(queue->operationQueue().isSuspended());
}

}  // namespace
}  // namespace http_test
