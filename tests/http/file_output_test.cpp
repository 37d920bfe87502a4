#include <QFile>

#include "http/content/http_data_compressor.h"
#include "http_fixture.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
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
