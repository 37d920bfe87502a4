
#include <QList>
#include <mutex>

#include "platform/net_exchange.h"
#include "support/http_server.h"
#include "support/socket_server.h"

using namespace Qt::Literals::StringLiterals;
using net_test::Exchange;
using net_test::Loop;
using net_test::message;
using net_test::Source;
using platform::HTTPProxy;
using support::HTTPServer;
using support::Peer;
using support::Reply;
using support::SocketServer;

namespace {

HTTPProxy proxyAt(int port, HTTPProxy::Kind kind) {
    HTTPProxy proxy;
    proxy.kind = kind;
    proxy.host = u"127.0.0.1"_s;
    proxy.port = port;
    return proxy;
}

/// A proxy that opens no tunnel; it writes down what it was asked.
class TunnelProxy {
public:
    explicit TunnelProxy(const QByteArray& answer)
        : sockets([this, answer](Peer& peer) {
              head = peer.readHead();
              peer.write(answer);
          }) {}

    QByteArray head;
    SocketServer sockets;
};

/// Nothing but a proxy's own question can be told from what the server would have said.
TEST(NetProxy, UnderstandsOfARefusedTunnelTheQuestionAlone) {
    struct Refusal {
        const char* answer;
        int status;
        std::string failure;
        const char* said;
    };
    const std::string refused = "kCFErrorDomainCFNetwork 306";
    const Refusal table[] = {
        {"HTTP/1.1 407 Who\r\nProxy-Authenticate: Basic realm=x\r\nContent-Length: 3\r\n\r\nabc",
         407, "", ""},
        {"HTTP/1.1 502 Bad\r\nConnection: close\r\n\r\n", 0, refused, "answered 502 Bad"},
        {"HTTP/1.1 302 Go\r\nLocation: http://evil/\r\nContent-Length: 0\r\n\r\n", 0, refused,
         "answered 302 Go"},
        {"HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=x\r\nContent-Length: 3\r\n\r\nabc", 0,
         refused, "answered 401 No"},
        {"HTTP/1.1 404\r\nContent-Length: 0\r\n\r\n", 0, refused, "answered 404"},
        {"HTTP/1.1 407 Wh", 0, "kCFErrorDomainCFNetwork -1005", ""},
    };
    Loop loop;
    for (const Refusal& each : table) {
        TunnelProxy proxy(each.answer);
        auto request = message(u"https://name.invalid/"_s);
        request.headers.set(u"Proxy-Authorization"_s, u"Basic eDp5"_s);
        request.headers.set(u"User-Agent"_s, u"Orlop"_s);
        request.headers.set(u"Cookie"_s, u"secret"_s);
        Exchange exchange(loop, request);
        exchange.stream->setProxy(proxyAt(proxy.sockets.port(), HTTPProxy::Kind::Http));
        exchange.run();
        EXPECT_EQ(exchange.status(), each.status) << each.answer;
        EXPECT_EQ(exchange.failure(), each.failure) << each.answer;
        EXPECT_EQ(exchange.body, QByteArray());
        EXPECT_EQ(proxy.head,
                  "CONNECT name.invalid:443 HTTP/1.1\r\nHost: name.invalid:443\r\n"
                  "Proxy-Authorization: Basic eDp5\r\nUser-Agent: Orlop\r\n\r\n");
        if (exchange.stream->responseHead()) {
            EXPECT_TRUE(exchange.stream->responseHead()->fromProxy);
        }
        const QString text = exchange.hasFailed ? exchange.stream->error()->text : QString();
        EXPECT_TRUE(text.contains(QString::fromLatin1(each.said))) << text.toStdString();
        EXPECT_EQ(text.contains(u"127.0.0.1:%1"_s.arg(proxy.sockets.port())), *each.said != '\0');
    }
}

TEST(NetProxy, LetsSocksProxiesLookNamesUp) {
    HTTPServer server;
    server.serve("/", {.body = "behind"});
    QList<QByteArray> asked;
    std::mutex lock;
    const auto note = [&](const QByteArray& bytes) {
        const std::lock_guard guard(lock);
        asked.append(bytes);
    };
    // Each message of a client comes in one piece: it waits for an answer.
    SocketServer four([&](Peer& peer) {
        note(peer.read());
        peer.write(QByteArray::fromHex("005a000000000000"));
        peer.relayTo(server.port());
    });
    SocketServer five([&](Peer& peer) {
        static_cast<void>(peer.read());
        peer.write(QByteArray::fromHex("0502"));
        const QByteArray user = peer.read();
        peer.write(QByteArray::fromHex("0100"));
        note(user + peer.read());
        peer.write(QByteArray::fromHex("05000001000000000000"));
        peer.relayTo(server.port());
    });
    Loop loop;
    const auto fetch = [&](const QString& url, HTTPProxy proxy) {
        Exchange exchange(loop, url);
        exchange.stream->setProxy(proxy);
        return exchange.run().body;
    };
    HTTPProxy withUser = proxyAt(five.port(), HTTPProxy::Kind::Socks5);
    withUser.user = u"me"_s;
    withUser.password = u"pw"_s;
    const HTTPProxy plain = proxyAt(four.port(), HTTPProxy::Kind::Socks4);
    EXPECT_EQ(fetch(u"http://name.invalid/"_s, plain), "behind");
    EXPECT_EQ(fetch(u"http://192.0.2.7/"_s, plain), "behind");
    EXPECT_EQ(fetch(u"http://name.invalid/"_s, withUser), "behind");
    ASSERT_EQ(asked.size(), 3);
    EXPECT_EQ(asked[0], QByteArray::fromHex("040100500000000100") + "name.invalid" + '\0');
    EXPECT_EQ(asked[1], QByteArray::fromHex("04010050c000020700"));
    EXPECT_EQ(asked[2], QByteArray::fromHex("01026d6502") + "pw" +
                            QByteArray::fromHex("050100030c") + "name.invalid" +
                            QByteArray::fromHex("0050"));
}

/// A server's second message of NTLM, with a challenge and no target.
QByteArray ntlmChallenge() {
    return "NTLM " + (QByteArray("NTLMSSP\0\2\0\0\0", 12) + QByteArray(8, '\0') +
                      QByteArray::fromHex("06820200") + "nonsense" + QByteArray(8, '\0'))
                         .toBase64();
}

/// Which message of NTLM a request carries; 0: none.
int ntlmMessage(const support::ReceivedRequest& request) {
    const QByteArray value =
        QByteArray::fromStdString(request.header("Authorization").value_or(""));
    return value.startsWith("NTLM ") ? QByteArray::fromBase64(value.mid(5)).at(8) : 0;
}

TEST(NetConnectionAuthentication, KeepsTheRoundsToItself) {
    HTTPServer server;
    server.handleAll([](const support::ReceivedRequest& request) {
        Reply reply{.body = "welcome"};
        if (ntlmMessage(request) != 3) {
            reply.status = 401;
            reply.headers = {{"WWW-Authenticate", ntlmChallenge().toStdString()}};
        }
        return reply;
    });
    Loop loop;
    Source source(support::patternedBytes(100'000));
    Exchange exchange(loop, message(server.url(u"/x"_s), u"PUT"_s), &source, 100'000);
    exchange.stream->setServerCredentials(
        {platform::ConnectionAuthentication::Ntlm, u"me"_s, u"pw"_s, u"DOMAIN"_s});
    exchange.run();
    EXPECT_EQ(exchange.status(), 200);
    EXPECT_EQ(exchange.body, "welcome");
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(ntlmMessage(requests[0]), 1);
    EXPECT_EQ(requests[1].body, source.bytes);
    EXPECT_EQ(server.connectionCount(), 1U);
}

}  // namespace
