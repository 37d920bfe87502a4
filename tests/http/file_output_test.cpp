#include <sys/resource.h>

#include <QDir>
#include <QFileInfo>
#include <csignal>

#include "http/content/http_data_compressor.h"
#include "http_fixture.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using support::Reply;

/// For its life, no file of this process grows past so many bytes: a write fails as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : formerHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &former_);
        const rlimit limit{bytes, former_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &former_);
        std::signal(SIGXFSZ, formerHandler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit former_{};
    void (*formerHandler_)(int);
};

class FileOutputTest : public HTTPTest {
protected:
    const QByteArray body = support::patternedBytes(600'000);

    std::shared_ptr<http::HTTPRequest> fileRequest() {
        auto made = observedRequest(u"/file"_s);
        made->setDownloadDestinationPath(done());
        made->setTemporaryFileDownloadPath(part());
        return made;
    }
    std::shared_ptr<http::HTTPRequest> resumingRequest(const QByteArray& there) {
        write(part(), there);
        auto made = fileRequest();
        made->setAllowResumeForFileDownloads(true);
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

TEST_F(FileOutputTest, GoesOnWhereItStoppedOrStartsOver) {
    struct Case {
        Reply::Ranges ranges;
        QByteArray there;
        std::uint64_t kept;
        std::vector<std::int64_t> sizes;
    };
    const Case cases[] = {{Reply::Ranges::Honour, body.left(200'000), 200'000, {600'000}},
                          {Reply::Ranges::Ignore, "quite another file", 0, {600'018, -18}}};
    for (const auto& [ranges, there, kept, expected] : cases) {
        SCOPED_TRACE(there.size());
        server.serve("/file", {.body = body, .ranges = ranges});
        const auto request = resumingRequest(there);
        std::vector<std::int64_t> sizes;
        http::RequestBlocks blocks;
        blocks.downloadSizeIncrementedBlock = [&](std::int64_t size) { sizes.push_back(size); };
        request->setBlocks(std::move(blocks));
        run(request);
        EXPECT_EQ(server.requests().back().header("Range"),
                  "bytes=" + std::to_string(there.size()) + "-");
        EXPECT_EQ(request->partialDownloadSize(), kept);
        EXPECT_EQ(request->totalBytesRead(), 600'000 - kept);
        EXPECT_EQ(contents(done()), body);
        EXPECT_EQ(sizes, expected);
    }
}

TEST_F(FileOutputTest, ARedirectsBodyStaysOutOfAFileThatIsGoneOnWith) {
    server.serve("/file", {.body = body});
    server.serve("/moved", {.status = 302, .headers = {{"Location", "/file"}}, .body = "moved"});
    const auto request = resumingRequest(body.left(1000));
    request->setURL(*platform::Url::parse(server.url(u"/moved"_s)));
    run(request);
    EXPECT_EQ(contents(done()), body);
}

TEST_F(FileOutputTest, RepeatsAfterATimeOutAsOftenAsToldAndAsksForTheRest) {
    server.serve("/file", {.body = body, .stallAfter = 20'000});
    const auto request = resumingRequest({});
    request->setNumberOfTimesToRetryOnTimeout(2);
    request->startAsynchronous();
    for (const qint64 there : {20'000, 40'000, 60'000}) {
        ASSERT_TRUE(main.waitUntil([&] { return QFileInfo(part()).size() == there; }));
        advance(10.5);
    }
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(errorCode(*request), 2);
    EXPECT_EQ(request->retryCount(), 2);
    std::vector<std::optional<std::string>> ranges;
    for (const auto& seen : server.requests())
        ranges.push_back(seen.header("Range"));
    EXPECT_EQ(ranges, (std::vector<std::optional<std::string>>{std::nullopt, "bytes=20000-",
                                                               "bytes=40000-"}));
    EXPECT_EQ(contents(part()), body.left(60'000));
}

TEST_F(FileOutputTest, WhatNobodyCanGoOnWithIsDeleted) {
    server.serve("/file", {.body = body, .stallAfter = 100'000});
    for (const bool resumes : {false, true}) {
        const auto request = resumes ? resumingRequest({}) : fileRequest();
        request->startAsynchronous();
        ASSERT_TRUE(main.waitUntil([&] { return QFileInfo(part()).size() == 100'000; }));
        request->cancel();
        ASSERT_TRUE(main.waitUntil([&] { return request->isFinished(); }));
        EXPECT_EQ(QFile::exists(part()), resumes);
        QFile::remove(part());
    }
}

TEST_F(FileOutputTest, TroubleWithFilesIsToldByName) {
    server.serve("/file", {.body = body});
    QDir(folder.path()).mkpath(u"folder/inside"_s);
    const QString nowhere = temporaryFile(u"none/x"_s);
    const QString occupied = temporaryFile(u"folder"_s);
    const std::pair<QString, QString> cases[] = {
        {nowhere, u"Failed to move file from '%1' to '%2'"_s.arg(part(), nowhere)},
        {occupied, u"Failed to delete file at path '%1'"_s.arg(occupied)}};
    for (const auto& [destination, text] : cases) {
        const auto request = fileRequest();
        request->setDownloadDestinationPath(destination);
        run(request);
        ASSERT_TRUE(request->error());
        EXPECT_EQ(request->error()->text, text);
    }
    QFile::remove(part());
    const FileSizeLimit nearlyFull(300'000);
    const auto full = fileRequest();
    run(full);
    EXPECT_EQ(errorCode(*full), 8);
    EXPECT_FALSE(QFile::exists(part()));
    EXPECT_EQ(delegate.count("finished"), 0);
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

}  // namespace
}  // namespace http_test
