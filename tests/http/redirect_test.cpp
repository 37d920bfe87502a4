#include <QScopeGuard>
#include <atomic>
#include <thread>

#include "http_fixture.h"
#include "support/socket_server.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using support::Reply;

class RedirectTest : public HTTPTest {
protected:
    static Reply redirect(int status, const QString& location) {
        return Reply{
            .status = status, .headers = {{"Location", location.toStdString()}}, .body = "gone"};
    }
    void serveTarget() { server.serve("/target", {.body = "target"}); }
};

TEST_F(RedirectTest, StatusDecidesWhatTravels) {
    struct Case {
        int status;
        bool keepsMethodOnFound;
        std::string method;
    };
    serveTarget();
    for (const auto& [status, keepsMethodOnFound, method] :
         {Case{301, false, "GET"}, Case{302, false, "GET"}, Case{303, false, "GET"},
          Case{307, false, "POST"}, Case{301, true, "POST"}, Case{302, true, "POST"},
          Case{303, true, "GET"}, Case{307, true, "POST"}}) {
        SCOPED_TRACE(status);
        server.serve("/moved", redirect(status, u"/target"_s));
        const auto request = observedRequest(u"/moved"_s);
        request->setShouldUseRFC2616RedirectBehaviour(keepsMethodOnFound);
        request->appendPostData("body");
        request->setShouldStreamPostDataFromDisk(false);
        for (const auto& name :
             {u"User-Agent"_s, u"Accept"_s, u"Referer"_s, u"Range"_s, u"Authorization"_s})
            request->addRequestHeader(name, u"given"_s);
        run(request);

        const auto seen = server.requests().back();
        EXPECT_EQ(seen.target, "/target");
        EXPECT_EQ(seen.method, method);
        EXPECT_EQ(seen.header("User-Agent"), "given");
        EXPECT_EQ(seen.header("Accept"), "given");
        const bool keepsAll = method == "POST";
        EXPECT_EQ(seen.body, keepsAll ? "body" : "");
        for (const char* name : {"Referer", "Range", "Authorization"})
            EXPECT_EQ(seen.header(name).has_value(), keepsAll) << name;
        EXPECT_EQ(request->redirectCount(), 1);
        EXPECT_EQ(request->url().path(), u"/target"_s);
        EXPECT_EQ(request->originalURL().path(), u"/moved"_s);
        EXPECT_EQ(request->responseStatusCode(), 200);
    }
}

TEST_F(RedirectTest, LocationIsTakenByteByByte) {
    using Headers = std::vector<std::pair<std::string, std::string>>;
    struct Case {
        Headers headers;
        std::string target;  ///< Empty: it leads nowhere.
    };
    for (const Case& c : {
             Case{{{"Location", "/caf\xe9?\xfc"}}, "/caf%E9?%FC"},
             Case{{{"Location", "/caf\xc3\xa9"}}, "/caf%C3%A9"},
             Case{{{"Location", "/caf\xc3\xa9/\xe9"}}, "/caf%C3%A9/%E9"},
             Case{{{"Location", "/a b%20c"}}, "/a%20b%20c"},
             Case{{{"Location", "/one"}, {"location", "/one"}}, "/one"},
             Case{{{"Location", "/one"}, {"Location", "/two"}}, ""},
         }) {
        SCOPED_TRACE(c.headers.front().second);
        server.handleAll([&c](const support::ReceivedRequest& request) {
            return request.target == "/moved" ? Reply{.status = 302, .headers = c.headers}
                                              : Reply{.body = "there"};
        });
        const auto moved = request(u"/moved"_s);
        run(moved);
        EXPECT_EQ(server.requests().back().target, c.target.empty() ? "/moved" : c.target);
        EXPECT_EQ(errorCode(*moved), c.target.empty() ? 1 : 0);
    }
}

/// Nobody wants what it says, so nobody waits for its end.
TEST_F(RedirectTest, ABodyOnTheWayIsNotReadForEver) {
    serveTarget();
    const QByteArray endless(4 << 20, 'x');
    for (const int status : {302, 307, 401}) {
        SCOPED_TRACE(status);
        server.handle("/moved", [&](const support::ReceivedRequest& seen) {
            if (seen.header("Authorization"))
                return Reply{.body = "target"};
            return Reply{.status = status,
                         .headers = {{"Location", "/target"}, {"WWW-Authenticate", "Basic"}},
                         .body = endless,
                         .length = Reply::Length::None,
                         .stallAfter = 2 << 20};
        });
        const auto moved = request(server.url(u"/moved"_s).replace(u"://"_s, u"://me:pw@"_s));
        moved->startAsynchronous();
        EXPECT_TRUE(main.waitUntil([&] { return moved->isFinished(); }));
        EXPECT_EQ(moved->responseData(), "target");
        server.release();
    }
}

TEST_F(RedirectTest, ABodyThatTricklesIsLeftBehind) {
    std::atomic<int> wanted = 1;
    serveTarget();
    const QByteArray target = server.url(u"/target"_s).toLatin1();
    support::SocketServer slow([&](support::Peer& peer) {
        static_cast<void>(peer.readHead());
        peer.write("HTTP/1.1 302 Found\r\nLocation: " + target + "\r\n\r\n");
        for (int sent = 0; sent < 3 && peer.write("x");) {
            ++sent;
            while (sent >= wanted && wanted < 3)
                std::this_thread::yield();
        }
        static_cast<void>(peer.readHead());
    });
    const auto end = qScopeGuard([&] { wanted = 3; });
    const auto moved = request(u"http://127.0.0.1:%1/"_s.arg(slow.port()));
    moved->startAsynchronous();
    ASSERT_TRUE(main.waitUntil([&] { return moved->totalBytesRead() == 1; }));
    main.clock.advance(9);
    wanted = 2;
    ASSERT_TRUE(main.waitUntil([&] { return moved->totalBytesRead() == 2; }));
    main.clock.advance(2);
    wanted = 3;
    ASSERT_TRUE(main.waitUntil([&] { return moved->isFinished(); }));
    EXPECT_EQ(moved->responseData(), "target");
}

TEST_F(RedirectTest, OtherStatusesAreAnswers) {
    for (const int status : {300, 304, 305, 306, 308}) {
        Reply reply = redirect(status, u"/target"_s);
        if (status == 304)
            reply.body.clear();
        server.serve("/moved", reply);
        const auto request = this->request(u"/moved"_s);
        run(request);
        EXPECT_EQ(request->responseStatusCode(), status);
        EXPECT_EQ(request->redirectCount(), 0);
    }
    server.serve("/moved", redirect(308, u"/target"_s));
    const auto willing = request(u"/moved"_s);
    willing->setFollowsPermanentRedirect(true);
    run(willing);
    EXPECT_EQ(willing->url().path(), u"/target"_s);

    server.serve("/moved", redirect(302, u"/target"_s));
    const auto unwilling = request(u"/moved"_s);
    unwilling->setShouldRedirect(false);
    run(unwilling);
    EXPECT_EQ(unwilling->responseStatusCode(), 302);
    EXPECT_EQ(server.requests().size(), 8U);
}

TEST_F(RedirectTest, FollowsFiveAndNotSix) {
    server.handleAll([](const support::ReceivedRequest& seen) {
        const int left = std::stoi(seen.target.substr(1));
        Reply reply;
        if (left > 0)
            reply = redirect(302, QString::number(left - 1));
        return reply;
    });
    const auto five = observedRequest(u"/5"_s);
    run(five);
    EXPECT_FALSE(five->error());
    EXPECT_EQ(five->redirectCount(), 5);
    EXPECT_EQ(delegate.count("redirected"), 5);
    EXPECT_EQ(delegate.count("started"), 6);

    const auto six = request(u"/6"_s);
    run(six);
    EXPECT_EQ(errorCode(*six), 9);
    EXPECT_EQ(six->error()->text, u"The request failed because it redirected too many times"_s);
    EXPECT_EQ(server.requests().size(), 12U);
}

TEST_F(RedirectTest, ResolvesWhatServersWrite) {
    struct Case {
        QString location, target;
    };
    for (const auto& [location, target] :
         {Case{u"c"_s, u"/a/c"_s}, Case{u"../c?x=1"_s, u"/c?x=1"_s}, Case{u"//%1/c"_s, u"/c"_s},
          Case{u"/with blank"_s, u"/with%20blank"_s}, Case{u"?q"_s, u"/a/b?q"_s}}) {
        const QString authority = u"127.0.0.1:%1"_s.arg(server.port());
        const QString sent = location.contains(u'%') ? location.arg(authority) : location;
        int asked = 0;
        server.handle("/a/b", [&, sent](const support::ReceivedRequest&) {
            return asked++ == 0 ? redirect(302, sent) : Reply();
        });
        run(request(u"/a/b"_s));
        EXPECT_EQ(server.requests().back().target, target.toStdString());
    }
}

TEST_F(RedirectTest, NeverLeavesTheWeb) {
    for (const QString& location :
         {u"file:///etc/passwd"_s, u"ftp://127.0.0.1/x"_s, u"javascript:alert(1)"_s, u"http://"_s,
          u"data:,x"_s, u"http://[bad"_s}) {
        server.serve("/moved", redirect(302, location));
        const auto request = this->request(u"/moved"_s);
        run(request);
        EXPECT_EQ(errorCode(*request), 5) << location.toStdString();
    }
}

TEST_F(RedirectTest, ADelegateMayTakeItOver) {
    serveTarget();
    server.serve("/moved", redirect(302, u"/ignored"_s));
    delegate.does.confirmsRedirects = true;
    delegate.does.receivesData = true;
    delegate.followsRedirects = false;
    const auto request = observedRequest(u"/moved"_s);
    request->startAsynchronous();
    ASSERT_TRUE(main.waitUntil([&] { return delegate.count("willRedirect") == 1; }));
    EXPECT_EQ(delegate.redirects.at(0).path(), u"/ignored"_s);
    advance(60);  // Nothing runs, so nothing times out.
    EXPECT_FALSE(delegate.hasEnded());
    request->redirectToURL(*platform::Url::parse(server.url(u"/target"_s)));
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(delegate.data, "gonetarget");
    EXPECT_EQ(delegate.count("finished"), 1);
    EXPECT_EQ(server.requests().size(), 2U);
    request->redirectToURL(request->originalURL());  // Too late to mean anything.
    settleThread();
    EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(RedirectTest, ARequestThatWaitsForItsDelegateCanBeCancelled) {
    server.serve("/moved", redirect(302, u"/target"_s));
    delegate.does.confirmsRedirects = true;
    delegate.followsRedirects = false;
    const auto request = observedRequest(u"/moved"_s);
    request->startAsynchronous();
    ASSERT_TRUE(main.waitUntil([&] { return delegate.count("willRedirect") == 1; }));
    request->cancel();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(errorCode(*request), 4);
    ASSERT_TRUE(main.waitUntil([&] { return request->isFinished(); }));
    request->redirectToURL(*platform::Url::parse(server.url(u"/target"_s)));
    settleThread();
    EXPECT_EQ(server.requests().size(), 1U);
}

}  // namespace
}  // namespace http_test
