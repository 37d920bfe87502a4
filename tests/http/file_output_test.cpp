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
    explicit FileSizeLimit(rlim_t bytes) : _formerHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &_former);
        const rlimit limit{bytes, _former.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &_former);
        std::signal(SIGXFSZ, _formerHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit _former{};
    void (*_formerHandler)(int);
};

class FileOutputTest : public HTTPTest {
protected:
    const QByteArray body = support::patternedBytes(600'000);

    void serve(Reply reply) {
        reply.body = body;
        server.serve("/file", reply);
    }
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
    serve({});
    write(done(), "an older one");
    const auto request = fileRequest();
    run(request);
    EXPECT_EQ(contents(done()), body);
    EXPECT_FALSE(QFile::exists(part()));
    EXPECT_TRUE(request->rawResponseData().isEmpty());

    const auto unnamed = observedRequest(u"/file"_s);
    unnamed->setDownloadDestinationPath(temporaryFile(u"second"_s));
    run(unnamed);
    EXPECT_EQ(contents(temporaryFile(u"second"_s)), body);
}

TEST_F(FileOutputTest, AnEmptyBodyIsAnEmptyFile) {
    server.serve("/file", Reply());
    run(fileRequest());
    EXPECT_EQ(contents(done()), QByteArray());
    EXPECT_EQ(delegate.events.back(), "finished");
}

TEST_F(FileOutputTest, GoesOnWhereItStopped) {
    serve({});
    const auto request = resumingRequest(body.left(200'000));
    run(request);
    EXPECT_EQ(server.requests().at(0).header("Range"), "bytes=200000-");
    EXPECT_EQ(request->partialDownloadSize(), 200'000U);
    EXPECT_EQ(request->totalBytesRead(), 400'000U);
    EXPECT_EQ(contents(done()), body);
}

TEST_F(FileOutputTest, StartsOverWhenTheRangeIsIgnored) {
    Reply reply{.ranges = Reply::Ranges::Ignore};
    serve(reply);
    const auto request = resumingRequest("something else altogether");
    std::vector<std::int64_t> sizes;
    http::RequestBlocks blocks;
    blocks.downloadSizeIncrementedBlock = [&](std::int64_t size) { sizes.push_back(size); };
    request->setBlocks(std::move(blocks));
    run(request);
    EXPECT_EQ(request->partialDownloadSize(), 0U);
    EXPECT_EQ(contents(done()), body);
    EXPECT_EQ(sizes, (std::vector<std::int64_t>{600'025, -25}));
}

TEST_F(FileOutputTest, ARedirectsBodyStaysOutOfAFileThatIsGoneOnWith) {
    serve({});
    Reply moved{.status = 302, .headers = {{"Location", "/file"}}};
    moved.body = "<html>moved</html>";
    server.serve("/moved", moved);
    const auto request = resumingRequest(body.left(1000));
    request->setURL(*platform::Url::parse(server.url(u"/moved"_s)));
    run(request);
    EXPECT_EQ(contents(done()), body);
}

TEST_F(FileOutputTest, WhatNobodyCanGoOnWithIsDeleted) {
    Reply reply{.stallAfter = 100'000};
    serve(reply);
    for (const bool resumes : {false, true}) {
        const auto request = resumes ? resumingRequest({}) : fileRequest();
        request->startAsynchronous();
        ASSERT_TRUE(main.waitUntil([&] { return QFileInfo(part()).size() == 100'000; }));
        request->cancel();
        ASSERT_TRUE(main.waitUntil([&] { return request->isFinished(); }));
        EXPECT_EQ(QFile::exists(part()), resumes);
        QFile::remove(part());
    }
    EXPECT_FALSE(QFile::exists(done()));
}

TEST_F(FileOutputTest, TroubleWithFilesIsToldByName) {
    serve({});
    const auto nowhere = fileRequest();
    nowhere->setTemporaryFileDownloadPath(temporaryFile(u"none/part"_s));
    run(nowhere);
    EXPECT_EQ(errorCode(*nowhere), 8);

    const auto unmovable = fileRequest();
    unmovable->setDownloadDestinationPath(temporaryFile(u"none/done"_s));
    run(unmovable);
    EXPECT_EQ(unmovable->error()->text, u"Failed to move file from '%1' to '%2'"_s.arg(
                                            part(), temporaryFile(u"none/done"_s)));

    QDir(folder.path()).mkpath(u"folder/inside"_s);
    const auto undeletable = fileRequest();
    undeletable->setDownloadDestinationPath(temporaryFile(u"folder"_s));
    run(undeletable);
    EXPECT_EQ(undeletable->error()->text,
              u"Failed to delete file at path '%1'"_s.arg(temporaryFile(u"folder"_s)));

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
