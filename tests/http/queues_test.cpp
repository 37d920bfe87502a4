#include "http/http_network_queue.h"

#include "http/operation_queue.h"
#include "http_fixture.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using http::HTTPNetworkQueue;
using support::Reply;

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

struct Work final : http::Operation {
    Work(std::string workName, std::vector<std::string>& startedNames, bool endsAtOnce = false)
        : name(std::move(workName)), started(startedNames), isInstant(endsAtOnce) {}
    void start() override {
        started.push_back(name);
        if (isInstant)
            announceFinished();
    }
    void cancel() override { isCancelled = true; }
    void finish() { announceFinished(); }

    std::string name;
    std::vector<std::string>& started;
    bool isInstant;
    bool isCancelled = false;
};

class OperationQueueTest : public ::testing::Test {
protected:
    std::vector<std::string> started;
    http::OperationQueue queue;

    std::shared_ptr<Work> make(const std::string& name, bool endsAtOnce = false) {
        return std::make_shared<Work>(name, started, endsAtOnce);
    }
    std::shared_ptr<Work> add(const std::string& name) {
        auto work = make(name);
        queue.addOperation(work);
        return work;
    }
    using Names = std::vector<std::string>;
};

TEST_F(OperationQueueTest, RunsSoManyAtOnceInOrder) {
    queue.setMaxConcurrentOperationCount(2);
    const auto a = add("a");
    const auto b = add("b");
    add("c");
    add("d");
    EXPECT_EQ(started, (Names{"a", "b"}));
    b->finish();
    EXPECT_EQ(started, (Names{"a", "b", "c"}));
    b->finish();  // Says nothing new.
    EXPECT_EQ(started.size(), 3U);
    queue.changeMaxConcurrentOperationCount(1);
    EXPECT_EQ(started.size(), 4U);
    EXPECT_EQ(queue.maxConcurrentOperationCount(), 3);
    EXPECT_EQ(queue.operationCount(), 3U);
}

TEST_F(OperationQueueTest, HigherPrioritiesAndDependencies) {
    queue.setSuspended(true);
    queue.setMaxConcurrentOperationCount(1);
    const auto late = make("late");
    const auto probe = make("probe");
    const auto urgent = make("urgent");
    late->addDependency(probe);
    late->setQueuePriority(99);
    urgent->setQueuePriority(10);
    queue.addOperation(late);
    queue.addOperation(probe);
    queue.addOperation(urgent);
    EXPECT_TRUE(started.empty());
    queue.setSuspended(false);
    EXPECT_EQ(started, Names{"urgent"});
    urgent->finish();
    EXPECT_EQ(started.back(), "probe");
    probe->finish();
    EXPECT_EQ(started.back(), "late");
    const auto after = make("after");
    after->addDependency(probe);  // Which has finished long ago.
    queue.addOperation(after);
    late->finish();
    EXPECT_EQ(started.back(), "after");
}

TEST_F(OperationQueueTest, ThousandsThatEndAtOnceNeedNoStack) {
    queue.setSuspended(true);
    for (int i = 0; i < 100'000; ++i)
        queue.addOperation(make("x", true));
    queue.setSuspended(false);
    EXPECT_EQ(started.size(), 100'000U);
    EXPECT_EQ(queue.operationCount(), 0U);
}

TEST_F(OperationQueueTest, CancelReachesAllAndRemovalLetsThemGo) {
    queue.setMaxConcurrentOperationCount(1);
    const auto running = add("running");
    std::weak_ptr<Work> waiting = add("waiting");
    queue.cancelAllOperations();
    EXPECT_TRUE(running->isCancelled);
    EXPECT_TRUE(waiting.lock()->isCancelled);
    queue.removeAllOperations();
    EXPECT_TRUE(waiting.expired());
    running->finish();
    EXPECT_EQ(started.size(), 1U);
}

}  // namespace
}  // namespace http_test
