
#include "http_fixture.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using http::HTTPRequest;
using support::Reply;

using RequestTest = HTTPTest;

Reply okay(const QByteArray& body) {
    return Reply{.body = body};
}

TEST_F(RequestTest, TellsItsDelegateInOrderAndHandsOverEveryByte) {
    const QByteArray body = support::patternedBytes(3'000'000);
    server.serve("/file", okay(body));
    delegate.does.receivesData = true;
    const auto request = observedRequest(u"/file"_s);
    run(request);

    EXPECT_EQ(delegate.events,
              (std::vector<std::string>{"started", "headers", "data", "finished"}));
    EXPECT_EQ(delegate.data, body);
    EXPECT_TRUE(request->rawResponseData().isEmpty());
    EXPECT_EQ(request->totalBytesRead(), 3'000'000U);
    EXPECT_EQ(request->contentLength(), 3'000'000U);
    EXPECT_EQ(request->responseStatusCode(), 200);
    EXPECT_EQ(request->responseStatusMessage(), u"HTTP/1.1 200 OK"_s);
    EXPECT_EQ(request->originalURL(), request->url());
    EXPECT_FALSE(HTTPRequest::isNetworkInUse());
}

TEST_F(RequestTest, RefusesAddressesThatItCannotAsk) {
    const std::vector<platform::Url> addresses{
        platform::Url(), *platform::Url::parse(u"file:///etc/passwd"_s),
        *platform::Url::parse(u"ftp://localhost/x"_s), *platform::Url::parse(u"http:///x"_s)};
    for (const auto& address : addresses) {
        const auto request = HTTPRequest::requestWithURL(address);
        run(request);
        EXPECT_EQ(errorCode(*request), 5) << address.absoluteString().toStdString();
        EXPECT_EQ(request->error()->text, u"Unable to create request (bad url?)"_s);
    }
}

TEST_F(RequestTest, SendsItsHeadersAndTheJarsCookies) {
    const platform::Url url = *platform::Url::parse(server.url(u"/headers"_s));
    cookies->setCookies({cookie(u"jar"_s, url.host())}, url);
    const auto request = observedRequest(u"/headers"_s);
    request->setRequestCookies({cookie(u"own"_s, url.host())});
    request->addRequestHeader(u"X-Twice"_s, u"first"_s);
    request->addRequestHeader(u"X-Twice"_s, u"second"_s);
    HTTPRequest::setDefaultUserAgentString(u"Tester/1"_s);
    run(request);

    const auto seen = server.requests().at(0);
    EXPECT_EQ(seen.method, "GET");
    EXPECT_EQ(seen.header("Cookie"), "own=1; jar=1");
    EXPECT_EQ(seen.header("X-Twice"), "second");
    EXPECT_EQ(seen.header("User-Agent"), "Tester/1");
    EXPECT_EQ(seen.header("Accept-Encoding"), "gzip");
}

TEST_F(RequestTest, KeepsCookiesInJarAndSession) {
    server.serve("/set",
                 {.headers = {{"Set-Cookie", "a=1; Path=/"}, {"Set-Cookie", "b=2; Path=/"}}});
    run(request(u"/set"_s));
    const auto url = *platform::Url::parse(server.url(u"/"_s));
    EXPECT_EQ(cookies->cookiesForUrl(url).size(), 2U);
    EXPECT_EQ(HTTPRequest::sessionCookies().size(), 2U);
    HTTPRequest::clearSession();
    EXPECT_TRUE(cookies->cookiesForUrl(url).empty());
    EXPECT_TRUE(HTTPRequest::sessionCookies().empty());

    const auto aloof = request(u"/set"_s);
    aloof->setUseCookiePersistence(false);
    run(aloof);
    EXPECT_EQ(aloof->responseCookies().size(), 2U);
    EXPECT_TRUE(cookies->cookiesForUrl(url).empty());
}

TEST_F(RequestTest, ABodyDecidesTheMethod) {
    struct Case {
        QString method;
        std::string sent;
    };
    for (const auto& [method, sent] : {Case{u"GET"_s, "POST"}, Case{u"DELETE"_s, "POST"},
                                       Case{u"PUT"_s, "PUT"}, Case{u"PATCH"_s, "PATCH"}}) {
        const auto request = this->request(u"/post"_s);
        request->setRequestMethod(method);
        request->appendPostData("ab");
        request->appendPostData("c");
        run(request);
        const auto seen = server.requests().back();
        EXPECT_EQ(seen.method, sent);
        EXPECT_EQ(seen.body, "abc");
        EXPECT_EQ(seen.header("Content-Length"), "3");
        EXPECT_EQ(request->postLength(), 3U);
        EXPECT_EQ(request->connectionID(), 0U);
    }
}

TEST_F(RequestTest, RunsOnTheCallersThreadToo) {
    server.serve("/file", okay("body"));
    server.serve("/moved", {.status = 302, .headers = {{"Location", "/file"}}});
    delegate.does.receivesData = true;
    const auto request = observedRequest(u"/moved"_s);
    request->startSynchronous();
    // On the main thread its delegate has heard everything by now.
    EXPECT_EQ(delegate.data, "body");
    EXPECT_EQ(delegate.count("finished"), 1);
    EXPECT_TRUE(request->isFinished());

    const auto hopeless = observedRequest(u"http://127.0.0.1:1/"_s);
    hopeless->startSynchronous();
    EXPECT_EQ(errorCode(*hopeless), 1);
}

TEST_F(RequestTest, HoldsBackWhatTheMainThreadHasNotTaken) {
    const qsizetype size = 24 << 20;
    server.serve("/large", okay(support::patternedBytes(size)));
    delegate.does.receivesData = true;
    const auto request = observedRequest(u"/large"_s);
    request->startAsynchronous();
    // The main loop stands still; the transfer must come to rest although the server would go on.
    ASSERT_TRUE(waitForThread(
        [&] { return request->totalBytesRead() > 0 && !HTTPRequest::isNetworkInUse(); }));
    EXPECT_GE(request->totalBytesRead(), 4U << 20);
    EXPECT_LE(request->totalBytesRead(), (4U << 20) + 262144U);
    // Rest is no silence: the time-out does not count.
    main.clock.advance(1000);
    settleThread();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(delegate.data.size(), size);
    EXPECT_EQ(delegate.count("finished"), 1);
}

TEST_F(RequestTest, LengthsAreBookedAsTheyAreWritten) {
    for (const auto& [length, booked] : {std::pair("010", 8U), std::pair("10", 10U)}) {
        server.serve("/file", {.raw = QByteArray("HTTP/1.1 200 OK\r\nContent-Length: ") + length +
                                      "\r\n\r\n0123456789"});
        const auto request = this->request(u"/file"_s);
        run(request);
        EXPECT_EQ(request->contentLength(), booked);
        EXPECT_EQ(request->totalBytesRead(), 10U);
    }
}

}  // namespace
}  // namespace http_test
