#include <QFile>

#include "http/cache/cache_keys.h"
#include "http/cache/http_download_cache.h"
#include "http/content/http_data_compressor.h"
#include "http_fixture.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using http::HTTPDownloadCache;
using support::Reply;

class FileOutputTest : public HTTPTest {
protected:
    const QByteArray body = support::patternedBytes(600'000);

    std::shared_ptr<http::HTTPRequest> fileRequest() {
        auto made = observedRequest(u"/file"_s);
        made->setDownloadDestinationPath(done());
        made->setTemporaryFileDownloadPath(part());
        return made;
    }
    [[nodiscard]] QString done() const { return temporaryFile(u"done"_s); }
    [[nodiscard]] QString part() const { return temporaryFile(u"part"_s); }
};

TEST_F(FileOutputTest, PutsAWholeFileInPlace) {
    server.serve("/file", {.body = body});
    write(done(), "an older one");
    const auto request = fileRequest();
    run(request);
    EXPECT_EQ(contents(done()), body);
    EXPECT_FALSE(QFile::exists(part()));
    EXPECT_TRUE(request->rawResponseData().isEmpty());
}

TEST_F(FileOutputTest, GoesOnWhereItStopped) {
    server.serve("/file", {.body = body});
    write(part(), body.left(200'000));
    const auto request = fileRequest();
    request->setAllowResumeForFileDownloads(true);
    run(request);
    EXPECT_EQ(server.requests().at(0).header("Range"), "bytes=200000-");
    EXPECT_EQ(request->partialDownloadSize(), 200'000U);
    EXPECT_EQ(request->totalBytesRead(), 400'000U);
    EXPECT_EQ(contents(done()), body);
}

TEST_F(FileOutputTest, InflatesAtOnceOrAtTheEnd) {
    Reply reply{.headers = {{"Content-Encoding", "x-gzip"}},
                .body = http::HTTPDataCompressor::compressData(body).data};
    server.serve("/file", reply);
    for (const bool waits : {true, false}) {
        QFile::remove(done());
        const auto request = fileRequest();
        request->setShouldWaitToInflateCompressedResponses(waits);
        run(request);
        EXPECT_TRUE(request->isResponseCompressed());
        EXPECT_EQ(contents(done()), body);
        EXPECT_FALSE(QFile::exists(part()));

        const auto inMemory = this->request(u"/file"_s);
        inMemory->setShouldWaitToInflateCompressedResponses(waits);
        run(inMemory);
        EXPECT_EQ(inMemory->responseData(), body);
        EXPECT_EQ(inMemory->rawResponseData(), waits ? reply.body : body);

        RecordingDelegate taker;
        taker.does.receivesData = true;
        const auto passed = this->request(u"/file"_s);
        passed->setDelegate(&taker);
        passed->setShouldWaitToInflateCompressedResponses(waits);
        run(passed);
        EXPECT_EQ(taker.data, waits ? reply.body : body);
    }
    Reply damaged = reply;
    damaged.body[100] = static_cast<char>(~damaged.body[100]);
    server.serve("/file", damaged);
    const auto request = fileRequest();
    request->setShouldWaitToInflateCompressedResponses(false);
    run(request);
    EXPECT_EQ(errorCode(*request), 11);
    EXPECT_FALSE(QFile::exists(part()));
}

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
