#include <mutex>
#include <optional>

#include "http_fixture.h"
#include "support/log_recorder.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using http::HTTPRequest;
using platform::HTTPProxy;
using platform::ProxyChoice;
using platform::Url;
using support::ReceivedRequest;
using support::Reply;
using Choices = std::optional<std::vector<ProxyChoice>>;

/// Answers as told, and counts.
struct Settings : platform::SystemProxies {
    struct Shared {
        std::mutex lock;
        Choices answer = std::vector{ProxyChoice()};
        std::vector<std::string> asked;
    };
    explicit Settings(std::shared_ptr<Shared> state) : shared(std::move(state)) {}
    [[nodiscard]] Choices proxiesForURL(const Url& url) const override {
        const std::scoped_lock guard(shared->lock);
        shared->asked.push_back(url.absoluteString().toStdString());
        return shared->answer;
    }
    std::shared_ptr<Shared> shared;
};

/// Every server here is a proxy as well: it answers for addresses of other hosts.
class ProxyTest : public HTTPTest {
protected:
    std::shared_ptr<Settings::Shared> settings = std::make_shared<Settings::Shared>();
    support::HTTPServer other;

    ProxyTest() {
        session.reset();
        session =
            std::make_unique<http::HTTPSession>(main.clock, std::make_unique<Settings>(settings));
        for (support::HTTPServer* each : {&server, &other})
            each->handleAll([](const ReceivedRequest&) { return Reply{.body = "body"}; });
    }
    [[nodiscard]] HTTPProxy at(const support::HTTPServer& proxy) const {
        return {HTTPProxy::Kind::Http, u"127.0.0.1"_s, proxy.port(), {}, {}};
    }
    void answerWithScript(const QString& address) {
        settings->answer = std::vector{ProxyChoice{{}, *Url::parse(address)}};
    }
    [[nodiscard]] QByteArray scriptNaming(const support::HTTPServer& proxy) const {
        return "function FindProxyForURL(url, host) { return 'PROXY 127.0.0.1:" +
               QByteArray::number(proxy.port()) + "' }";
    }
    [[nodiscard]] static std::string target(const support::HTTPServer& seen) {
        return seen.requests().empty() ? "" : seen.requests().back().target;
    }
    [[nodiscard]] static int limit() {
        return HTTPRequest::sharedQueue().maxConcurrentOperationCount();
    }
};

TEST_F(ProxyTest, TheFirstChoiceOfTheSystemIsKeptForRedirects) {
    settings->answer = std::vector{ProxyChoice{at(other), {}}, ProxyChoice()};
    settings->answer->front().proxy.user = u"me"_s;
    settings->answer->front().proxy.password = u"pw"_s;
    other.serve("http://first.invalid/a",
                {.status = 302, .headers = {{"Location", "http://second.invalid/b"}}});
    const support::LogRecorder log;
    platform::setDebugLogEnabled(false);
    const auto made = observedRequest(u"http://first.invalid/a"_s);
    made->setDebugLogged(true);
    run(made);
    EXPECT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(
        log.contains(u"proxy for first.invalid: "_s + http::proxyTypeHTTP + u" 127.0.0.1"_s));
    EXPECT_EQ(made->responseData(), "body");
    EXPECT_EQ(target(other), "http://second.invalid/b");
    EXPECT_EQ(settings->asked, std::vector<std::string>{"http://first.invalid/a"});
    EXPECT_EQ(made->proxyHost(), u"127.0.0.1"_s);
    EXPECT_EQ(made->proxyType(), http::proxyTypeHTTP);
    EXPECT_EQ(made->proxyUsername() + made->proxyPassword(), u"mepw"_s);
}

/// It says who it is by answering CONNECT; nothing of that is the server's.
TEST_F(ProxyTest, ARefusedTunnelIsTheProxysFailure) {
    settings->answer = std::vector{ProxyChoice{at(other), {}}};
    delegate.does.suppliesCredentials = true;
    const std::pair<std::string, std::string> cookie{"Set-Cookie", "stolen=1; Path=/"};
    for (const int status : {301, 302, 307, 401, 404, 500, 502}) {
        SCOPED_TRACE(status);
        delegate.events.clear();
        other.serve("bank.invalid:443", {.status = status,
                                         .headers = {{"Location", "http://bank.invalid/evil"},
                                                     {"WWW-Authenticate", "Basic realm=\"bank\""},
                                                     cookie},
                                         .body = "not the bank's"});
        const auto made = observedRequest(u"https://bank.invalid/"_s);
        run(made);
        EXPECT_EQ(delegate.events, (std::vector<std::string>{"started", "failed"}));
        ASSERT_EQ(errorCode(*made), 1);
        EXPECT_TRUE(made->error()->underlying->text.contains(
            u"The proxy 127.0.0.1:%1 answered %2"_s.arg(other.port()).arg(status)))
            << made->error()->underlying->text.toStdString();
        EXPECT_EQ(made->responseStatusCode(), 0);
        EXPECT_EQ(made->responseData(), std::nullopt);
        EXPECT_TRUE(cookies->cookiesForUrl(*Url::parse(u"https://bank.invalid/"_s)).empty());
        EXPECT_EQ(target(other), "bank.invalid:443");
    }
}

/// Its question is understood, but its cookies are not the server's.
TEST_F(ProxyTest, AProxysQuestionSetsNoCookies) {
    settings->answer = std::vector{ProxyChoice{at(other), {}}};
    other.serve("bank.invalid:443", {.status = 407,
                                     .headers = {{"Proxy-Authenticate", "Basic realm=\"club\""},
                                                 {"Set-Cookie", "stolen=1; Path=/"}}});
    const auto made = observedRequest(u"https://bank.invalid/"_s);
    run(made);
    EXPECT_EQ(errorCode(*made), 3);
    EXPECT_TRUE(cookies->cookiesForUrl(*Url::parse(u"https://bank.invalid/"_s)).empty());
    EXPECT_TRUE(HTTPRequest::sessionCookies().empty());
}

TEST_F(ProxyTest, AScriptIsFetchedAheadOfTheQueueThatWaitsForIt) {
    server.serve("/proxy.pac", {.body = scriptNaming(other), .stallHead = true});
    answerWithScript(server.url(u"/proxy.pac"_s));
    const int before = limit();
    HTTPRequest::sharedQueue().setMaxConcurrentOperationCount(1);
    const auto made = request(u"http://far.invalid/"_s);
    made->startAsynchronous();
    ASSERT_TRUE(waitForThread([] { return limit() == 2; }));
    ASSERT_TRUE(waitForRequests(1));
    server.release();
    ASSERT_TRUE(main.waitUntil([&] { return made->isFinished(); }));
    EXPECT_EQ(limit(), 1);
    EXPECT_EQ(target(other), "http://far.invalid/");
    EXPECT_EQ(made->PACurl(), *Url::parse(server.url(u"/proxy.pac"_s)));

    server.serve("/proxy.pac", {.body = scriptNaming(other), .cutAfter = 3});
    const auto direct = request(u"/direct"_s);
    run(direct);
    EXPECT_EQ(direct->responseData(), "body");
    EXPECT_EQ(direct->proxyHost(), QString());
    EXPECT_EQ(limit(), 1) << "also when the script cannot be had";
    HTTPRequest::sharedQueue().setMaxConcurrentOperationCount(before);
}

TEST_F(ProxyTest, ACancelledSearchIsOver) {
    const int before = limit();
    server.serve("/proxy.pac", {.stallHead = true});
    answerWithScript(server.url(u"/proxy.pac"_s));
    const auto made = observedRequest(u"http://far.invalid/"_s);
    made->startAsynchronous();
    ASSERT_TRUE(waitForRequests(1));
    made->cancel();
    ASSERT_TRUE(main.waitUntil([&] { return made->isFinished(); }));
    main.settle();
    EXPECT_EQ(errorCode(*made), 4);
    EXPECT_EQ(delegate.events, std::vector<std::string>{"failed"});
    // The one that would have lowered it again has been told to keep quiet.
    EXPECT_EQ(limit(), before + 1);
    server.release();
    HTTPRequest::sharedQueue().setMaxConcurrentOperationCount(before);
    EXPECT_TRUE(other.requests().empty());
}

}  // namespace
}  // namespace http_test
