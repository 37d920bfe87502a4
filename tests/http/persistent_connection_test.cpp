#include "http/request/connection_lease.h"
#include "http/shared/connection_table.h"
#include "http/shared/transfer_loop.h"
#include "http_fixture.h"
#include "platform/net/http_read_stream.h"
#include "support/socket_server.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using http::ConnectionTarget;
using support::Reply;

class PersistentConnectionTest : public HTTPTest {
protected:
    void answerWith(std::vector<std::pair<std::string, std::string>> headers) {
        server.serve("/", {.headers = std::move(headers), .body = "body"});
    }
    std::shared_ptr<http::HTTPRequest> get(const QString& path = u"/"_s) {
        auto made = request(path);
        run(made);
        EXPECT_FALSE(made->error());
        return made;
    }
};

TEST_F(PersistentConnectionTest, HeadersDecideWhetherASocketIsUsedAgain) {
    struct Case {
        std::vector<std::pair<std::string, std::string>> headers;
        platform::Seconds pause;
        bool isReused;
    };
    const std::vector<Case> cases{
        {{}, 59, true},
        {{}, 61, false},
        {{{"Connection", "close"}}, 0, false},
        {{{"Connection", "Close"}, {"Keep-Alive", "timeout=15, max=100"}}, 0, false},
        {{{"Connection", "x, keep-alive"}}, 0, true},
        {{{"Keep-Alive", "timeout=15, max=100"}}, 14, true},
        {{{"Keep-Alive", "timeout=15, max=100"}}, 16, false},
        {{{"Keep-Alive", "timeout=15, max=6"}}, 1, true},
        {{{"Keep-Alive", "timeout=15, max=5"}}, 0, false},
        {{{"Keep-Alive", "timeout=15"}}, 0, false},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(i);
        answerWith(cases[i].headers);
        main.clock.advance(1000);
        get();
        const auto before = server.connectionCount();
        main.clock.advance(cases[i].pause);
        get();
        EXPECT_EQ(server.connectionCount() == before, cases[i].isReused);
    }
}

TEST_F(PersistentConnectionTest, ASocketThatDiedMeanwhileIsReplaced) {
    answerWith({});
    get();
    server.dropConnections();
    const auto next = get();
    EXPECT_EQ(next->responseData(), "body");
    EXPECT_EQ(server.connectionCount(), 2U);
    EXPECT_EQ(next->retryCount(), 0);
}

QString urlOf(const support::SocketServer& server, const QString& path = u"/"_s) {
    return u"http://127.0.0.1:%1%2"_s.arg(server.port()).arg(path);
}

TEST_F(PersistentConnectionTest, BytesBehindABodyAreNobodys) {
    const QByteArray head = "HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\n";
    for (const QByteArray& stray :
         {QByteArray("\r\n"), QByteArray("junk"), QByteArray("HTTP/1.1 200"), head + "evil"}) {
        for (const bool isLater : {true, false}) {
            SCOPED_TRACE(stray.toStdString() + (isLater ? " later" : " at once"));
            std::atomic<int> answers = 0;
            support::SocketServer speaker([&](support::Peer& peer) {
                while (!peer.readHead().isEmpty()) {
                    peer.write(head + (isLater ? "good" : "good" + stray));
                    if (isLater)
                        peer.write(stray);
                    ++answers;
                }
            });
            for (int round = 1; round <= 3; ++round) {
                EXPECT_EQ(get(urlOf(speaker))->responseData(), "good");
                // What was written to this machine's own socket can be read there.
                ASSERT_TRUE(main.waitUntil([&] { return answers == round; }));
            }
        }
    }
}

/// The request has left when the end comes, again and again.
TEST_F(PersistentConnectionTest, EndsOfKeptSocketsDoNotUseUpTheOneRetry) {
    support::SocketServer speaker([](support::Peer& peer) {
        const QByteArray head = peer.readHead();
        const int step = head.mid(5, 1).toInt();
        peer.write(step < 5 ? "HTTP/1.1 302 Found\r\nContent-Length: 0\r\nLocation: /" +
                                  QByteArray::number(step + 1) + "\r\n\r\n"
                            : QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nbody"));
        static_cast<void>(peer.readHead());
    });
    const auto request = get(urlOf(speaker, u"/0"_s));
    EXPECT_EQ(request->responseData(), "body");
    EXPECT_EQ(request->redirectCount(), 5);
    EXPECT_EQ(speaker.connectionCount(), 6);
}

TEST_F(PersistentConnectionTest, KeepsASocketOnlyIfTheBodyWasRead) {
    answerWith({});
    server.serve("/stall", {.body = QByteArray(100, 'x'), .stallAfter = 50});
    get();
    const auto unread = request(u"/stall"_s);
    unread->startAsynchronous();
    ASSERT_TRUE(main.waitUntil([&] { return unread->totalBytesRead() == 50; }));
    EXPECT_EQ(server.connectionCount(), 1U);
    unread->cancel();
    ASSERT_TRUE(main.waitUntil([&] { return unread->isFinished(); }));
    EXPECT_EQ(get()->connectionID(), 2U);
    EXPECT_EQ(server.connectionCount(), 2U);
}

TEST(ConnectionTable, AFailedConnectionIsNobodysAndFreeOnesAreFew) {
    support::ManualClock clock;
    http::ConnectionTable table(clock);
    std::uint32_t request = 0;
    const ConnectionTarget target{u"http"_s, u"a.example"_s, 0};
    const auto failed = table.acquire(target, nullptr, nullptr, request);
    table.remove(failed, request);
    EXPECT_NE(table.acquire(target, nullptr, failed, request), failed);
    EXPECT_EQ(table.count(), 1U);

    for (int i = 0; i < 1000; ++i) {
        const ConnectionTarget other{u"http"_s, u"host%1"_s.arg(i), 0};
        table.release(table.acquire(other, nullptr, nullptr, request), request, 60, true);
    }
    EXPECT_LE(table.count(), 200U);
    clock.advance(60);
    table.expirePersistentConnections();
    EXPECT_EQ(table.count(), 1U);  // The one in use.
}

}  // namespace
}  // namespace http_test
