#include "http/extras/cache/http_download_cache.h"

#include "http/content/http_data_compressor.h"
#include "http/extras/cache/cache_keys.h"
#include "http_fixture.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using http::HTTPDownloadCache;
using support::Reply;
using Headers = std::vector<std::pair<std::string, std::string>>;

class DownloadCacheTest : public HTTPTest {
protected:
    std::shared_ptr<HTTPDownloadCache> cache = std::make_shared<HTTPDownloadCache>(main.clock);
    const platform::Url url = *platform::Url::parse(server.url(u"/a.txt"_s));

    DownloadCacheTest() { EXPECT_FALSE(cache->setStoragePath(temporaryFile(u"cache"_s))); }

    void serve(const QByteArray& body, Headers headers = {}) {
        server.serve("/a.txt", {.headers = std::move(headers), .body = body});
    }
    std::shared_ptr<http::HTTPRequest> cachedRequest(const QString& path = u"/a.txt"_s) {
        auto made = observedRequest(path);
        made->setDownloadCache(cache);
        return made;
    }
    std::shared_ptr<http::HTTPRequest> get(std::uint32_t policy = 0) {
        auto made = cachedRequest();
        made->setCachePolicy(policy);
        run(made);
        return made;
    }
    [[nodiscard]] std::size_t sent() const { return server.requests().size(); }
};

TEST_F(DownloadCacheTest, AnswersWhileTheStoredResponseIsCurrent) {
    serve("first", {{"Cache-Control", "public, max-age=100"}, {"Content-Type", "text/plain"}});
    EXPECT_FALSE(get()->didUseCachedResponse());
    serve("second", {{"Cache-Control", "max-age=-1"}});
    main.clock.advance(99);
    delegate.events.clear();
    const auto cached = get();
    EXPECT_TRUE(cached->didUseCachedResponse());
    EXPECT_EQ(cached->responseData(), "first");
    EXPECT_EQ(cached->responseStatusCode(), 200);
    EXPECT_EQ(cached->totalBytesRead(), 5U);
    EXPECT_EQ(delegate.events, std::vector<std::string>{"finished"});
    EXPECT_EQ(sent(), 1U);
    main.clock.advance(2);
    for (const std::size_t expected : {2U, 3U}) {  // What has expired at once is asked for again.
        EXPECT_EQ(get()->responseData(), "second");
        EXPECT_EQ(sent(), expected);
    }
}

TEST_F(DownloadCacheTest, AsksWhetherSomethingChanged) {
    int asked = 0;
    server.handle("/a.txt", [&](const support::ReceivedRequest& seen) {
        if (asked++ > 0 && seen.header("If-None-Match") == "\"1\"" &&
            seen.header("If-Modified-Since") == "Sun, 06 Nov 1994 08:49:37 GMT")
            return Reply{.status = 304, .headers = {{"Cache-Control", "max-age=50"}}};
        return Reply{
            .headers = {{"ETag", "\"1\""}, {"Last-Modified", "Sun, 06 Nov 1994 08:49:37 GMT"}},
            .body = "body"};
    });
    EXPECT_FALSE(get()->didUseCachedResponse());
    for (int i = 0; i < 2; ++i) {  // The 304 says how long it may be used from then on.
        const auto again = get();
        EXPECT_TRUE(again->didUseCachedResponse());
        EXPECT_EQ(again->responseData(), "body");
        EXPECT_EQ(again->responseStatusCode(), 200);
        EXPECT_EQ(asked, 2);
    }
    main.clock.advance(51);
    get();
    EXPECT_EQ(asked, 3);
}

TEST_F(DownloadCacheTest, AChangedResponseReplacesTheStoredOne) {
    for (const char* body : {"first", "second"}) {
        serve(body, {{"ETag", body}, {"Last-Modified", "x"}, {"Cache-Control", "max-age=100"}});
        const auto asked = get(http::cachePolicyAskServerIfModified);
        EXPECT_FALSE(asked->didUseCachedResponse());
        EXPECT_EQ(asked->responseData(), body);
    }
    EXPECT_EQ(get()->responseData(), "second");
    EXPECT_EQ(sent(), 2U);
}

TEST_F(DownloadCacheTest, PolicyBits) {
    serve("first");
    get(http::cachePolicyDoNotWrite);
    EXPECT_FALSE(cache->cachedResponseDataForURL(url));
    get();
    serve("second");
    const std::pair<std::uint32_t, const char*> cases[] = {
        {http::cachePolicyOnlyLoadIfNotCached, "first"},
        {http::cachePolicyDoNotRead | http::cachePolicyDoNotWrite, "second"},
        {http::cachePolicyDontLoad, "first"}};
    for (const auto& [policy, body] : cases)
        EXPECT_EQ(get(policy)->responseData(), body) << policy;

    const auto nothing = cachedRequest(u"/unknown"_s);
    nothing->setCachePolicy(http::cachePolicyDontLoad);
    const std::size_t before = sent();
    run(nothing);
    EXPECT_EQ(delegate.events.back(), "finished");
    EXPECT_FALSE(nothing->responseData());
    EXPECT_FALSE(nothing->didUseCachedResponse());
    EXPECT_EQ(sent(), before);

    server.serve("/a.txt", {.raw = QByteArray(), .keepAlive = false});
    const auto fallen = get(http::cachePolicyFallbackToCacheIfLoadFails);
    EXPECT_EQ(fallen->responseData(), "first");
    EXPECT_FALSE(fallen->error());
    EXPECT_EQ(errorCode(*get(http::cachePolicyAskServerIfModified)), 1);
}

TEST_F(DownloadCacheTest, StoresOnlyWhatItMay) {
    const auto isStored = [&] {
        get(http::cachePolicyDoNotRead);
        const bool stored = cache->cachedResponseHeadersForURL(url).has_value();
        cache->removeCachedDataForURL(url);
        EXPECT_FALSE(cache->cachedResponseDataForURL(url));
        return stored;
    };
    const std::pair<Headers, bool> cases[] = {{{}, true},
                                              {{{"Cache-Control", "No-Store"}}, false},
                                              {{{"Cache-Control", "no-cache"}}, false},
                                              {{{"Pragma", "no-cache"}}, false},
                                              {{{"Cache-Control", "private, no-cache"}}, true}};
    for (const auto& [headers, stored] : cases) {
        serve("x", headers);
        EXPECT_EQ(isStored(), stored) << testing::PrintToString(headers);
    }
    // The bytes that a delegate took are nowhere to be stored from.
    serve("x");
    delegate.does.receivesData = true;
    EXPECT_FALSE(isStored());
    delegate.does.receivesData = false;
    server.serve("/a.txt", {.status = 404});
    EXPECT_FALSE(isStored());
}

TEST_F(DownloadCacheTest, KeepsBodiesUncompressedAndFilesCopiedUntilTheSessionIsCleared) {
    serve(http::HTTPDataCompressor::compressData("plain").data, {{"Content-Encoding", "gzip"}});
    get();
    EXPECT_EQ(cache->cachedResponseDataForURL(url), "plain");
    EXPECT_FALSE(cache->cachedResponseHeadersForURL(url)->contains(u"Content-Encoding"_s));

    serve("file");
    const auto file = cachedRequest();
    file->setCacheStoragePolicy(http::cacheStoragePermanent);
    file->setDownloadDestinationPath(temporaryFile(u"done"_s));
    run(file);
    EXPECT_EQ(contents(temporaryFile(u"done"_s)), "file");
    // The session's shadows it until that is cleared.
    EXPECT_EQ(cache->cachedResponseDataForURL(url), "plain");
    http::HTTPRequest::setDefaultCache(cache);
    http::HTTPRequest::clearSession();
    EXPECT_EQ(cache->cachedResponseDataForURL(url), "file");
}

TEST_F(DownloadCacheTest, AStoredRedirectIsFollowed) {
    server.serve("/b", {.body = "target"});
    for (const char* body : {"moved", ""}) {
        server.serve("/a.txt", {.status = 302,
                                .headers = {{"Location", "/b"}, {"Cache-Control", "max-age=100"}},
                                .body = body});
        const std::size_t before = sent();
        EXPECT_EQ(get(http::cachePolicyDoNotRead)->responseData(), "target");
        const auto again = get();
        EXPECT_EQ(again->responseData(), "target");
        EXPECT_EQ(again->redirectCount(), 1);
        EXPECT_EQ(sent(), before + 3);
    }
}

TEST(CacheKeys, NameFilesSafely) {
    const auto site = [](const QString& path) {
        return *platform::Url::parse(u"http://example.com"_s + path);
    };
    EXPECT_EQ(http::cacheKeyForURL(site({})), u"A9B9F04336CE0181A08E774E01113B31"_s);
    EXPECT_EQ(http::cacheKeyForURL(site(u"/"_s)), http::cacheKeyForURL(site({})));
    const std::pair<QString, QString> cases[] = {
        {u"/a.txt"_s, u"txt"_s},   {u"/a"_s, u"html"_s},
        {u"/a.PHP"_s, u"html"_s},  {u"/a.cachedheaders"_s, u"html"_s},
        {u"/a.b%00"_s, u"html"_s}, {u"/a.b%2F..%2Fc"_s, u"html"_s}};
    for (const auto& [path, extension] : cases)
        EXPECT_EQ(http::cacheExtensionForURL(site(path)), extension) << path.toStdString();
}

}  // namespace
}  // namespace http_test
