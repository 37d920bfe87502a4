#include <atomic>

#include "http_fixture.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using http::HTTPRequest;
using support::Reply;

/// Cancelling, time-outs and retries.
class CourseTest : public HTTPTest {
protected:
    static Reply stalledAfter(std::size_t bytes) {
        return Reply{.body = support::patternedBytes(100'000), .stallAfter = bytes};
    }
    static Reply silent() { return Reply{.stallHead = true}; }
};

TEST_F(CourseTest, CancelledWhileItWaitsForItsTurn) {
    HTTPRequest::sharedQueue().setSuspended(true);
    const auto request = observedRequest(u"/x"_s);
    request->startAsynchronous();
    request->cancel();
    request->cancel();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(delegate.events, std::vector<std::string>{"failed"});
    EXPECT_EQ(errorCode(*request), 4);
    EXPECT_FALSE(request->isFinished());
    HTTPRequest::sharedQueue().setSuspended(false);
    ASSERT_TRUE(main.waitUntil([&] { return request->isFinished(); }));
    EXPECT_EQ(delegate.events, std::vector<std::string>{"failed"});
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(CourseTest, CancelledBeforeTheHeadAndWithinTheBody) {
    server.serve("/silent", silent());
    server.serve("/stalled", stalledAfter(5000));
    delegate.does.receivesData = true;
    const auto mute = observedRequest(u"/silent"_s);
    mute->startAsynchronous();
    ASSERT_TRUE(waitForRequests(1));
    mute->cancel();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(delegate.events, (std::vector<std::string>{"started", "failed"}));
    EXPECT_TRUE(mute->isCancelled());

    delegate.events.clear();
    const auto begun = observedRequest(u"/stalled"_s);
    begun->startAsynchronous();
    ASSERT_TRUE(main.waitUntil([&] { return delegate.data.size() == 5000; }));
    begun->cancel();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(begun->error()->text, u"The request was cancelled"_s);
    ASSERT_TRUE(main.waitUntil([] { return HTTPRequest::sharedQueue().operationCount() == 0; }));
}

TEST_F(CourseTest, ADelegateThatHasGoneHearsNothing) {
    server.serve("/stalled", stalledAfter(5000));
    delegate.does.receivesData = true;
    auto released = std::make_shared<int>();
    const std::weak_ptr<int> watch = released;
    http::RequestBlocks blocks;
    blocks.failureBlock = [released] { ADD_FAILURE() << "told of its end"; };
    const auto request = observedRequest(u"/stalled"_s);
    request->setBlocks(std::move(blocks));
    released.reset();
    request->startAsynchronous();
    // The thread has posted events by now; none of them may arrive any more.
    ASSERT_TRUE(waitForThread([&] { return request->totalBytesRead() == 5000; }));
    request->clearDelegatesAndCancel();
    EXPECT_TRUE(watch.expired());
    ASSERT_TRUE(main.waitUntil([&] { return request->isFinished(); }));
    EXPECT_TRUE(delegate.events.empty());
    EXPECT_TRUE(delegate.data.isEmpty());
}

TEST_F(CourseTest, TheSessionMayEndAtAnyTime) {
    server.serve("/stalled", stalledAfter(5000));
    std::vector<std::shared_ptr<HTTPRequest>> requests;
    for (int i = 0; i < 6; ++i) {
        requests.push_back(observedRequest(u"/stalled"_s));
        requests.back()->startAsynchronous();
    }
    ASSERT_TRUE(waitForRequests(4));
    session.reset();
    main.settle();
    EXPECT_FALSE(delegate.hasEnded());
    for (const auto& request : requests)
        request->cancel();
    session = std::make_unique<http::HTTPSession>(main.clock);
    const auto fresh = request(u"/x"_s);
    run(fresh);
    EXPECT_EQ(fresh->responseStatusCode(), 404);
}

TEST_F(CourseTest, TimesOutAfterSilenceOnly) {
    server.serve("/stalled", stalledAfter(5000));
    delegate.does.receivesData = true;
    const auto request = observedRequest(u"/stalled"_s);
    request->setTimeOutSeconds(10);
    request->startAsynchronous();
    ASSERT_TRUE(main.waitUntil([&] { return delegate.data.size() == 5000; }));
    advance(10);
    EXPECT_FALSE(delegate.hasEnded());
    server.release();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(delegate.count("finished"), 1);

    const auto mute = observedRequest(u"/silent"_s);
    server.serve("/silent", silent());
    delegate.events.clear();
    mute->startAsynchronous();
    ASSERT_TRUE(waitForRequests(2));
    advance(10.5);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(errorCode(*mute), 2);
    EXPECT_EQ(mute->error()->text, u"The request timed out"_s);
    EXPECT_EQ(mute->retryCount(), 0);
}

TEST_F(CourseTest, ADeadConnectionIsTriedAgainOnce) {
    std::atomic<int> asked = 0;
    const auto dropping = [&](int drops) -> support::HTTPServer::Handler {
        return [&asked, drops](const support::ReceivedRequest&) {
            Reply reply{.body = "alive"};
            if (asked++ < drops) {
                reply.raw = QByteArray();
                reply.keepAlive = false;
            }
            return reply;
        };
    };
    server.handle("/once", dropping(1));
    const auto once = observedRequest(u"/once"_s);
    run(once);
    EXPECT_EQ(once->responseData(), "alive");
    EXPECT_EQ(once->retryCount(), 1);
    EXPECT_EQ(delegate.count("started"), 2);

    // The first of them is the end of a connection that was kept, which does not count.
    asked = 0;
    server.handle("/twice", dropping(3));
    const auto twice = request(u"/twice"_s);
    run(twice);
    EXPECT_EQ(errorCode(*twice), 1);
    EXPECT_EQ(twice->error()->text, u"A connection failure occurred"_s);
    ASSERT_NE(twice->error()->underlying, nullptr);
    EXPECT_EQ(asked, 3);

    asked = 0;
    server.handle("/post", dropping(1));
    const auto post = request(u"/post"_s);
    post->setShouldStreamPostDataFromDisk(true);
    post->appendPostData("kept for the second try");
    run(post);
    EXPECT_FALSE(post->error());
    EXPECT_EQ(server.requests().back().body, "kept for the second try");
}

TEST_F(CourseTest, WhatTheDelegateHasCannotBeSentTwice) {
    Reply cut{.body = support::patternedBytes(100'000), .cutAfter = 30'000};
    server.serve("/cut", cut);
    delegate.does.receivesData = true;
    const auto request = observedRequest(u"/cut"_s);
    run(request);
    EXPECT_EQ(errorCode(*request), 1);
    EXPECT_EQ(delegate.data, cut.body.left(30'000));
    EXPECT_EQ(delegate.events.back(), "failed");
    EXPECT_EQ(server.requests().size(), 1U);
}

}  // namespace
}  // namespace http_test
