#include "desktop/checksums/checksum_search.h"

#include <gtest/gtest.h>

#include "http/http_session.h"
#include "platform/net/cookie_storage.h"
#include "platform/net/credential_storage.h"
#include "support/http_server.h"
#include "support/main_loop.h"

using namespace Qt::Literals::StringLiterals;

using namespace Qt::Literals::StringLiterals;

namespace {

struct Found {
    int answers = 0;
    std::optional<engine::Checksum> checksum;
    QString list;
};

}  // namespace

TEST(ChecksumSearch, LooksThroughWhatLiesBesideTheFile) {
    support::MainLoop main;
    support::HTTPServer server;
    const auto cookies = platform::makeCookieStorage(QString());
    const auto secrets = platform::makeMemoryCredentialStorage();
    platform::installSharedCookieStorage(cookies.get());
    platform::installSharedCredentialStorage(secrets.get());
    auto session = std::make_unique<http::HTTPSession>(main.clock);
    const QByteArray digits(64, 'a');
    // The likeliest place says nothing of this file.
    server.serve("/d/a.iso.sha256", {.body = digits + "  b.iso\n"});
    const auto search = [&](const QString& path) {
        Found found;
        desktop::ChecksumSearch asking(main.loop, *platform::Url::parse(server.url(path)),
                                       u"a.iso"_s,
                                       [&found](const auto& checksum, const auto& list) {
                                           ++found.answers;
                                           found.checksum = checksum;
                                           found.list = list;
                                       });
        EXPECT_TRUE(main.waitUntil([&found] { return found.answers > 0; }));
        EXPECT_EQ(found.answers, 1);
        return found;
    };
    EXPECT_FALSE(search(u"/d/a.iso"_s).checksum);
    server.serve("/d/SHA256SUMS", {.body = digits + " *./a.iso\n"});
    const Found found = search(u"/d/a.iso?token=1#part"_s);
    EXPECT_EQ(found.checksum ? found.checksum->text() : QString(),
              u"sha256="_s + QString::fromLatin1(digits));
    EXPECT_EQ(found.list, u"SHA256SUMS"_s);
    session.reset();
    main.settle();
    platform::installSharedCookieStorage(nullptr);
    platform::installSharedCredentialStorage(nullptr);
}
