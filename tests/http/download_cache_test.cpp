#include "http/cache/http_download_cache.h"

#include <QDir>

#include "http/cache/cache_keys.h"
#include "http/content/http_data_compressor.h"
#include "http_fixture.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using http::HTTPDownloadCache;
using support::Reply;

class DownloadCacheTest : public HTTPTest {
protected:
    std::shared_ptr<HTTPDownloadCache> cache = std::make_shared<HTTPDownloadCache>(main.clock);

    DownloadCacheTest() { EXPECT_FALSE(cache->setStoragePath(temporaryFile(u"cache"_s))); }

    void serve(const QByteArray& body,
               std::vector<std::pair<std::string, std::string>> headers = {}) {
        server.serve("/a.txt", {.headers = std::move(headers), .body = body});
    }
    std::shared_ptr<http::HTTPRequest> get(std::uint32_t policy = 0) {
        auto made = observedRequest(u"/a.txt"_s);
        made->setDownloadCache(cache);
        made->setCachePolicy(policy);
        run(made);
        return made;
    }
    [[nodiscard]] std::size_t sent() const { return server.requests().size(); }
};

TEST_F(DownloadCacheTest, AnswersWhileTheStoredResponseIsCurrent) {
    serve("first", {{"Cache-Control", "public, max-age=100"}, {"Content-Type", "text/plain"}});
    EXPECT_FALSE(get()->didUseCachedResponse());
    serve("second");
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
    serve("second", {{"Cache-Control", "max-age=-1"}});
    EXPECT_EQ(get()->responseData(), "second");
    EXPECT_EQ(sent(), 2U);
    EXPECT_EQ(get()->responseData(), "second");
    EXPECT_EQ(sent(), 3U);
}

TEST_F(DownloadCacheTest, AsksWhetherSomethingChanged) {
    int asked = 0;
    server.handle("/a.txt", [&](const support::ReceivedRequest& seen) {
        Reply reply{
            .headers = {{"ETag", "\"1\""}, {"Last-Modified", "Sun, 06 Nov 1994 08:49:37 GMT"}},
            .body = "body"};
        if (asked++ > 0 && seen.header("If-None-Match") == "\"1\"" &&
            seen.header("If-Modified-Since") == "Sun, 06 Nov 1994 08:49:37 GMT") {
            reply.status = 304;
            reply.headers = {{"Cache-Control", "max-age=50"}};
        }
        return reply;
    });
    EXPECT_FALSE(get()->didUseCachedResponse());
    const auto second = get();
    EXPECT_TRUE(second->didUseCachedResponse());
    EXPECT_EQ(second->responseData(), "body");
    EXPECT_EQ(second->responseStatusCode(), 200);
    EXPECT_EQ(asked, 2);
    // The 304 said how long it may be used now.
    EXPECT_TRUE(get()->didUseCachedResponse());
    EXPECT_EQ(asked, 2);
    // Answers of 304 leave the connection in use.
    EXPECT_EQ(server.connectionCount(), 1U);
}

TEST_F(DownloadCacheTest, StoresOnlyWhatItMay) {
    const auto url = *platform::Url::parse(server.url(u"/a.txt"_s));
    const auto isStored = [&] {
        get(http::cachePolicyDoNotRead);
        const bool stored = cache->cachedResponseHeadersForURL(url).has_value();
        cache->removeCachedDataForURL(url);
        EXPECT_FALSE(cache->cachedResponseDataForURL(url));
        return stored;
    };
    serve("x");
    EXPECT_TRUE(isStored());
    for (const auto& [name, value, stored] :
         std::vector<std::tuple<const char*, const char*, bool>>{
             {"Cache-Control", "No-Store", false},
             {"Cache-Control", "no-cache", false},
             {"Pragma", "no-cache", false},
             {"Cache-Control", "private, no-cache", true}}) {
        serve("x", {{name, value}});
        EXPECT_EQ(isStored(), stored) << name << value;
    }
    // The bytes that a delegate took are nowhere to be stored from.
    serve("x");
    delegate.does.receivesData = true;
    EXPECT_FALSE(isStored());
    delegate.does.receivesData = false;
    server.serve("/a.txt", {.status = 404});
    EXPECT_FALSE(isStored());
}

TEST(CacheKeys, NameFilesSafely) {
    const auto url = [](const QString& text) { return *platform::Url::parse(text); };
    EXPECT_EQ(http::cacheKeyForURL(url(u"http://example.com"_s)),
              u"A9B9F04336CE0181A08E774E01113B31"_s);
    EXPECT_EQ(http::cacheKeyForURL(url(u"http://example.com/"_s)),
              http::cacheKeyForURL(url(u"http://example.com"_s)));
    EXPECT_EQ(http::cacheKeyForURL(platform::Url()), QString());
    for (const auto& [path, extension] :
         std::vector<std::pair<QString, QString>>{{u"/a.txt"_s, u"txt"_s},
                                                  {u"/a"_s, u"html"_s},
                                                  {u"/a.PHP"_s, u"html"_s},
                                                  {u"/a.cachedheaders"_s, u"html"_s},
                                                  {u"/a.b%2F..%2Fc"_s, u"html"_s},
                                                  {u"/a.b%00"_s, u"html"_s}})
        EXPECT_EQ(http::cacheExtensionForURL(url(u"http://example.com"_s + path)), extension)
            << path.toStdString();
}

}  // namespace
}  // namespace http_test
