
#include <QDir>
#include <QSysInfo>
#include <algorithm>
#include <future>

#include "platform/net/network_loop_private.h"
#include "platform/net_exchange.h"
#include "support/http_server.h"
#include "support/manual_clock.h"

using namespace Qt::Literals::StringLiterals;
using net_test::Exchange;
using net_test::Loop;
using net_test::message;
using platform::HTTPReadStream;
using support::HTTPServer;
using support::Reply;

namespace {

constexpr qsizetype largeBody = 24 << 20;

/// A server with "/large", which is more than sockets and buffers can hold.
class NetFlow : public testing::Test {
protected:
    NetFlow() {
        Reply reply{.body = support::patternedBytes(largeBody)};
        body = reply.body;
        server.serve("/large", reply);
    }
    [[nodiscard]] std::uint64_t turns() { return loop.loop.internals().turns(); }

    HTTPServer server;
    QByteArray body;
    Loop loop;
};

TEST_F(NetFlow, SleepsWithABoundedBufferWhileUnscheduled) {
    Exchange exchange(loop, server.url(u"/large"_s));
    exchange.onBytes = [&exchange] { exchange.stream->unschedule(); };
    ASSERT_TRUE(exchange.stream->open());
    loop.runUntil([&exchange] { return exchange.events == 1; });
    loop.runFor(0.05);
    const std::uint64_t before = turns();
    loop.runFor(0.3);
    EXPECT_LE(turns() - before, 6U);
    EXPECT_EQ(exchange.events, 1);

    while (exchange.stream->hasBytesAvailable())
        exchange.read();
    EXPECT_GT(exchange.body.size(), 0);
    EXPECT_LT(exchange.body.size(), 2 << 20);

    exchange.onBytes = {};
    exchange.stream->schedule();
    loop.runUntil([&exchange] { return exchange.isOver(); });
    EXPECT_EQ(exchange.body, body);
}

TEST_F(NetFlow, SurvivesBeingTakenOffTheLoopAgainAndAgain) {
    Reply reply{.body = support::patternedBytes(1 << 20)};
    server.serve("/f", reply);
    reply.length = Reply::Length::Chunked;
    server.serve("/chunked", reply);
    constexpr int count = 64;
    platform::Timers later(loop.loop.calls());
    std::vector<std::unique_ptr<Exchange>> exchanges;
    for (int i = 0; i < count; ++i) {
        Exchange& each = *exchanges.emplace_back(
            std::make_unique<Exchange>(loop, server.url(i % 2 == 0 ? u"/f"_s : u"/chunked"_s)));
        each.readSize = 100'000;
        each.onBytes = [&each, &later] {
            each.read();
            each.stream->unschedule();
            later.start(0.005, [&each] { each.stream->schedule(); });
        };
        each.stream->unschedule();
        ASSERT_TRUE(each.stream->open());
        later.start(0.001 * i, [&each] { each.stream->schedule(); });
    }
    loop.runUntil([&exchanges] {
        return std::all_of(exchanges.begin(), exchanges.end(),
                           [](const auto& each) { return each->isOver(); });
    });
    for (const auto& each : exchanges) {
        EXPECT_EQ(each->body, reply.body);
        EXPECT_LT(each->events, 200);
    }
    EXPECT_LT(turns(), 60'000U);
}

TEST_F(NetFlow, MayBeClosedOrDestroyedInItsEvents) {
    server.serve("/empty", Reply());
    for (const bool destroys : {false, true}) {
        for (const QString& url :
             {server.url(u"/large"_s), server.url(u"/empty"_s), u"http://127.0.0.1:1/"_s}) {
            auto stream = std::make_unique<HTTPReadStream>(loop.loop, message(url));
            int events = 0;
            const QString captured = url;  // Dies with the client.
            stream->setClient([&, captured](HTTPReadStream::Event) {
                destroys ? stream.reset() : stream->close();
                events += captured == url ? 1 : 100;
            });
            ASSERT_TRUE(stream->open());
            loop.runUntil([&events] { return events > 0; });
            loop.runFor(0.01);
            EXPECT_EQ(events, 1);
        }
    }
}

TEST_F(NetFlow, OneStreamMayDestroyAnotherThatIsDue) {
    Exchange first(loop, server.url(u"/large"_s)), second(loop, server.url(u"/large"_s));
    const auto destroyOther = [&](Exchange& other) { other.stream.reset(); };
    first.onBytes = [&] { first.read(), destroyOther(second); };
    second.onBytes = [&] { second.read(), destroyOther(first); };
    ASSERT_TRUE(first.stream->open() && second.stream->open());
    loop.runUntil([&] { return first.isOver() || second.isOver(); });
    EXPECT_EQ((first.stream ? first : second).body, body);
}

TEST_F(NetFlow, CanBeGivenUpInEveryPhase) {
    server.serve("/stalled", {.stallHead = true});
    const auto descriptors = [] { return QDir(u"/proc/self/fd"_s).count(); };
    const auto before = descriptors();
    // What is opened once and kept, by the resolver for one.
    constexpr int kept = 4;
    // Not "localhost", which needs no look-up.
    const QString named = u"http://%1:1/"_s.arg(QSysInfo::machineHostName());
    for (int round = 0; round < 40; ++round) {
        for (const QString& url : {server.url(u"/large"_s), server.url(u"/stalled"_s), named,
                                   u"http://127.0.0.1:1/"_s}) {
            HTTPReadStream stream(loop.loop, message(url));
            ASSERT_TRUE(stream.open());
            for (int turn = 0; turn < round; ++turn) {
                loop.loop.wake();
                loop.loop.runUntil([] { return true; });
            }
        }
    }
    // The name look-ups that nobody waits for end by and by, and the server comes only now to some
    // of the requests.
    for (int i = 0; i < 3000 && descriptors() > before + kept; ++i) {
        server.release();
        loop.runFor(0.01);
    }
    EXPECT_LE(descriptors(), before + kept);
}

TEST(NetLoop, MayEndBeforeItsStreams) {
    HTTPServer server;
    server.serve("/f", {.body = support::patternedBytes(1 << 20), .stallAfter = 1 << 19});
    auto loop = std::make_unique<Loop>();
    Exchange exchange(*loop, server.url(u"/f"_s)), never(*loop, server.url(u"/f"_s));
    auto identity = std::make_unique<platform::HTTPConnectionIdentity>(loop->loop);
    exchange.stream->setConnection(identity.get());
    ASSERT_TRUE(exchange.stream->open());
    loop->runUntil([&exchange] { return exchange.events > 0; });
    loop.reset();
    EXPECT_TRUE(exchange.stream->read(1).isEmpty());
    exchange.stream->schedule();
    EXPECT_FALSE(never.stream->open());
}

TEST(NetLoop, WakesForPostsAndForAClockThatIsMoved) {
    support::ManualClock clock;
    platform::NetworkThread thread(clock);
    std::promise<void> isArmed, hasRun;
    platform::Timer timer(thread.loop().calls());
    thread.loop().calls().post([&] {
        timer.start(3600, [&] { hasRun.set_value(); });
        isArmed.set_value();
    });
    isArmed.get_future().get();
    auto later = hasRun.get_future();
    EXPECT_EQ(later.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    clock.advance(3600);
    EXPECT_EQ(later.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    EXPECT_LE(thread.loop().internals().turns(), 6U);
}

}  // namespace
