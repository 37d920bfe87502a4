#include "http/operation_queue.h"

#include <gtest/gtest.h>

#include <string>

namespace http_test {
namespace {

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

TEST_F(OperationQueueTest, HigherPrioritiesGoFirst) {
    queue.setSuspended(true);
    queue.setMaxConcurrentOperationCount(1);
    add("usual");
    const auto urgent = make("urgent");
    urgent->setQueuePriority(10);
    queue.addOperation(urgent);
    EXPECT_TRUE(started.empty());
    queue.setSuspended(false);
    EXPECT_EQ(started, Names{"urgent"});
    urgent->finish();
    EXPECT_EQ(started.back(), "usual");
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
