#include <gtest/gtest.h>

#include "platform/net_exchange.h"
#include "support/http_server.h"

using namespace Qt::Literals::StringLiterals;
using net_test::Exchange;
using net_test::Loop;
using platform::TLSSettings;
using support::HTTPServer;
using support::Reply;

namespace {

const std::string untrusted = "NSOSStatusErrorDomain -9807";

std::string outcome(Loop& loop, const QString& url, const TLSSettings& settings) {
    Exchange exchange(loop, url);
    exchange.stream->setTLSSettings(settings);
    exchange.run();
    return exchange.hasEnded ? std::to_string(exchange.status()) : exchange.failure();
}

TEST(NetTls, TrustsWhomItIsToldTo) {
    HTTPServer server(HTTPServer::Security::Tls);
    server.serve("/", Reply());
    const QString byAddress = u"https://127.0.0.1:%1/"_s.arg(server.port());
    TLSSettings known, unchecked;
    known.authoritiesPath = server.authoritiesPath();
    unchecked.validatesCertificate = false;
    TLSSettings missing;
    missing.authoritiesPath = u"/nonexistent.pem"_s;
    Loop loop;
    EXPECT_EQ(outcome(loop, server.url(), known), "200");
    EXPECT_EQ(outcome(loop, server.url(), {}), untrusted);
    EXPECT_EQ(outcome(loop, byAddress, known), untrusted) << "issued for another name";
    EXPECT_EQ(outcome(loop, byAddress, unchecked), "200");
    EXPECT_EQ(outcome(loop, server.url(), missing), untrusted);
}

}  // namespace
