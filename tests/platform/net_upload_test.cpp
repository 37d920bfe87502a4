
#include "platform/net_exchange.h"
#include "support/http_server.h"

using namespace Qt::Literals::StringLiterals;
using net_test::Exchange;
using net_test::Loop;
using net_test::message;
using net_test::Source;
using support::HTTPServer;
using support::Reply;

namespace {

class NetUpload : public testing::Test {
protected:
    NetUpload() {
        server.handle("/put", [](const support::ReceivedRequest& request) {
            return Reply{.body = QByteArray::number(request.body.size())};
        });
    }
    [[nodiscard]] auto length(const Source& source) const {
        return static_cast<std::uint64_t>(source.bytes.size());
    }

    HTTPServer server;
    Loop loop;
};

TEST_F(NetUpload, SendsTheBodyAsItComes) {
    for (const qsizetype size : {0, 1, 70'000, 3'000'000}) {
        for (const qsizetype pieceSize : {qsizetype(7001), qsizetype(1 << 20)}) {
            Source source(support::patternedBytes(size));
            source.pieceSize = pieceSize;
            auto request = message(server.url(u"/put"_s), u"PUT"_s);
            request.headers.set(u"Content-Length"_s, u"12345"_s);
            request.headers.set(u"Expect"_s, u"100-continue"_s);
            Exchange exchange(loop, request, &source, length(source));
            exchange.run();
            EXPECT_EQ(exchange.body, QByteArray::number(size));
            EXPECT_EQ(exchange.stream->bodyBytesWritten(), static_cast<std::uint64_t>(size));
            const auto seen = server.requests().back();
            EXPECT_EQ(seen.body, source.bytes);
            EXPECT_EQ(seen.header("Content-Length"), std::to_string(size));
            EXPECT_EQ(seen.header("Expect"), std::nullopt);
        }
    }
}

TEST_F(NetUpload, SendsNeitherMoreNorLessThanAnnounced) {
    Source longer(support::patternedBytes(2000));
    Exchange clamped(loop, message(server.url(u"/put"_s), u"PUT"_s), &longer, 1500);
    EXPECT_EQ(clamped.run().body, "1500");

    Source shorter(support::patternedBytes(1000));
    Exchange cut(loop, message(server.url(u"/put"_s), u"PUT"_s), &shorter, 1500);
    EXPECT_EQ(cut.run().failure(), "NSPOSIXErrorDomain 5");

    Source failing(support::patternedBytes(2000));
    failing.pieceSize = 100;
    failing.failsAt = 500;
    Exchange failed(loop, message(server.url(u"/put"_s), u"PUT"_s), &failing, 2000);
    EXPECT_EQ(failed.run().failure(), "NSPOSIXErrorDomain 5");
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(NetUpload, HearsAnAnswerThatComesEarly) {
    server.serveBeforeBody("/early", {.status = 413, .body = "too much", .keepAlive = false});
    for (const int pausesEvery : {0, 2}) {
        Source source(support::patternedBytes(20'000'000));
        source.pausesEvery = pausesEvery;
        Exchange exchange(loop, message(server.url(u"/early"_s), u"PUT"_s), &source,
                          length(source));
        exchange.run();
        EXPECT_EQ(exchange.status(), 413);
        EXPECT_EQ(exchange.body, "too much");
        EXPECT_LT(exchange.stream->bodyBytesWritten(), length(source));
    }
}

}  // namespace
