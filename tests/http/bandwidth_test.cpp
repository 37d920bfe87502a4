#include "http/shared/bandwidth_account.h"

#include "http/shared/shared_state.h"
#include "http_fixture.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using http::BandwidthAccount;
using http::HTTPRequest;
using support::Reply;
using Verdict = BandwidthAccount::Verdict;

TEST(BandwidthAccount, AnOverdraftIsPaidForWithSleep) {
    support::ManualClock clock;
    BandwidthAccount account(clock);
    account.setMaxBandwidthPerSecond(1000);
    account.measureBandwidthUsage();
    EXPECT_EQ(account.verdict(), Verdict::AsBefore);
    account.incrementBandwidthUsedInLastSecond(1000);
    account.measureBandwidthUsage();
    EXPECT_EQ(account.verdict(), Verdict::AsBefore);
    account.incrementBandwidthUsedInLastSecond(500);
    account.measureBandwidthUsage();
    EXPECT_EQ(account.verdict(), Verdict::Rest);
    EXPECT_DOUBLE_EQ(*account.throttleWakeUpTime(), clock.monotonic() + 1.5);
    clock.advance(1.25);
    account.measureBandwidthUsage();  // Another period, with nothing in it.
    EXPECT_EQ(account.verdict(), Verdict::Rest);
    clock.advance(0.25);
    EXPECT_EQ(account.verdict(), Verdict::Run);

    clock.advance(1);
    account.measureBandwidthUsage();
    account.incrementBandwidthUsedInLastSecond(9000);
    account.measureBandwidthUsage();
    EXPECT_EQ(account.verdict(), Verdict::Rest);
    account.setMaxBandwidthPerSecond(0);
    EXPECT_EQ(account.verdict(), Verdict::Run);
}

TEST(BandwidthAccount, ReadsGetSmallerAsTheLimitNears) {
    support::ManualClock clock;
    BandwidthAccount account(clock);
    EXPECT_EQ(account.readLength(262144), 262144);
    account.setMaxBandwidthPerSecond(1000);
    EXPECT_EQ(account.readLength(16384), 250);
    EXPECT_EQ(account.readLength(100), 100);
    for (const auto& [more, length] : std::vector<std::pair<std::uint64_t, qsizetype>>{
             {600, 100}, {393, 1}, {7, 1}, {1, 1}, {5000, 1}}) {
        account.incrementBandwidthUsedInLastSecond(more);
        EXPECT_EQ(account.readLength(16384), length);
    }
}

class ThrottleTest : public HTTPTest {
protected:
    void serveFile(qsizetype size) {
        server.serve("/file", {.body = support::patternedBytes(size)});
    }
};

TEST_F(ThrottleTest, AllRequestsShareOneLimit) {
    constexpr std::uint64_t limit = 100'000;
    serveFile(250'000);
    HTTPRequest::setMaxBandwidthPerSecond(limit);
    delegate.does.receivesData = true;
    const auto one = observedRequest(u"/file"_s);
    const auto other = observedRequest(u"/file"_s);
    one->startAsynchronous();
    other->startAsynchronous();
    const platform::Seconds start = main.clock.monotonic();
    platform::Seconds elapsed = 0;
    while (delegate.count("finished") < 2) {
        ASSERT_TRUE(waitForRest());
        const auto read = one->totalBytesRead() + other->totalBytesRead();
        // The first read of all begins the account, and is not in it.
        EXPECT_LE(static_cast<double>(read), limit * (elapsed + 1.25) + 20);
        ASSERT_LT(elapsed, 20);
        advance(0.25);
        elapsed = main.clock.monotonic() - start;
    }
    EXPECT_EQ(delegate.data.size(), 500'000);
    EXPECT_GE(elapsed, 4);
    EXPECT_LE(elapsed, 5.5);
}

TEST_F(ThrottleTest, SomeRequestsHaveALimitOfTheirOwn) {
    serveFile(250'000);
    const auto own = std::make_shared<BandwidthAccount>(main.clock);
    own->setMaxBandwidthPerSecond(50'000);
    delegate.does.receivesData = true;
    const auto free = observedRequest(u"/file"_s);
    const auto limited = observedRequest(u"/file"_s);
    limited->setOwnBandwidth(own);
    free->startAsynchronous();
    limited->startAsynchronous();
    ASSERT_TRUE(waitForRest());
    EXPECT_EQ(free->totalBytesRead(), 250'000U);
    EXPECT_LE(limited->totalBytesRead(), 65'000U);
    advance(1);
    ASSERT_TRUE(waitForRest());
    EXPECT_LE(limited->totalBytesRead(), 130'000U);
    const auto before = limited->totalBytesRead();
    const auto other = std::make_shared<BandwidthAccount>(main.clock);
    other->setMaxBandwidthPerSecond(60'000);
    limited->setOwnBandwidth(other);
    advance(0.25);
    ASSERT_TRUE(waitForRest());
    EXPECT_GE(limited->totalBytesRead(), before + 40'000U) << "another limit during a rest";
    limited->setOwnBandwidth(nullptr);
    advance(0.25);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(limited->totalBytesRead(), 250'000U) << "lifted in the middle";
}

TEST_F(ThrottleTest, ALimitOfItsOwnIsReachedBesideOthersThatTakeTheRest) {
    serveFile(2'000'000);
    HTTPRequest::setMaxBandwidthPerSecond(100'000);
    const auto own = std::make_shared<BandwidthAccount>(main.clock);
    own->setMaxBandwidthPerSecond(20'000);
    const auto free = observedRequest(u"/file"_s);
    const auto limited = observedRequest(u"/file"_s);
    limited->setOwnBandwidth(own);
    free->startAsynchronous();
    limited->startAsynchronous();
    for (int step = 0; step < 40; ++step) {
        ASSERT_TRUE(waitForRest());
        advance(0.25);
    }
    EXPECT_GE(limited->totalBytesRead(), 150'000U);
    EXPECT_LE(limited->totalBytesRead(), 230'000U);
}

TEST_F(ThrottleTest, SleepIsNoSilence) {
    serveFile(50'000);
    HTTPRequest::setMaxBandwidthPerSecond(10'000);
    http::SharedState::current()->bandwidth.measureBandwidthUsage();
    HTTPRequest::incrementBandwidthUsedInLastSecond(1'000'000);  // 99 seconds of debt.
    const auto request = observedRequest(u"/file"_s);
    request->startAsynchronous();
    ASSERT_TRUE(waitForRest());
    advance(60);
    EXPECT_FALSE(delegate.hasEnded());
    EXPECT_LE(request->totalBytesRead(), 1U);
    HTTPRequest::setMaxBandwidthPerSecond(0);
    advance(0.25);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(request->totalBytesRead(), 50'000U);
}

TEST_F(ThrottleTest, NewRequestsRestToo) {
    serveFile(50'000);
    HTTPRequest::setMaxBandwidthPerSecond(10'000);
    const auto first = observedRequest(u"/file"_s);
    first->startAsynchronous();
    ASSERT_TRUE(waitForRest());
    const auto second = request(u"/file"_s);
    second->startAsynchronous();
    settleThread();
    EXPECT_TRUE(second->inProgress());
    EXPECT_FALSE(HTTPRequest::isNetworkInUse());
    EXPECT_EQ(second->totalBytesRead(), 0U);
}

}  // namespace
}  // namespace http_test
