#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include "platform/base/utc.h"
#include "platform/files/files.h"
#include "platform/net/cookie_date.h"
#include "platform/net/cookie_storage.h"
#include "support/no_descriptors.h"

using namespace Qt::Literals::StringLiterals;
using platform::Cookie;
using platform::cookieDate;
using platform::Url;

namespace {

std::vector<Cookie> parsed(const QString& field, const QString& url) {
    platform::HTTPHeaders headers;
    headers.add(u"Set-Cookie"_s, field);
    return platform::cookiesFromHeaders(headers, Url::parse(url).value());
}

/// "name=value", in the order of sending.
std::string sent(const platform::CookieStorage& storage, const QString& url) {
    QStringList pairs;
    for (const Cookie& cookie : storage.cookiesForUrl(Url::parse(url).value()))
        pairs.append(cookie.name + u'=' + cookie.value);
    return pairs.join(u' ').toStdString();
}

void store(platform::CookieStorage& storage, const QString& field, const QString& url) {
    storage.setCookies(parsed(field, url), Url::parse(url).value());
}

TEST(NetCookies, ReadsTheDatesOfAllServers) {
    const QDateTime expected(QDate(2031, 11, 9), QTime(8, 49, 37), platform::utc);
    for (const QString& text : {u"Sun, 09 Nov 2031 08:49:37 GMT"_s,
                                u"Sunday, 09-Nov-31 08:49:37 GMT"_s, u"Sun Nov  9 08:49:37 2031"_s,
                                u"09 november 2031 8:49:37"_s, u"2031 nov 9th 08:49:37z"_s})
        EXPECT_EQ(cookieDate(text), expected) << qPrintable(text);
    for (const QString& text : {u""_s, u"tomorrow"_s, u"31 Feb 2031 08:49:37"_s,
                                u"9 Nov 2031 25:49:37"_s, u"9 Nov 1600 08:49:37"_s})
        EXPECT_FALSE(cookieDate(text).isValid()) << qPrintable(text);
}

TEST(NetCookies, ParsesAndRefuses) {
    const auto cookies = parsed(
        u" a = \"b=c\" ; Domain=.Example.com; PATH=/x; secure; HttpOnly; Max-Age=60; "
        "Expires=Sun, 09 Nov 2031 08:49:37 GMT"_s,
        u"https://www.example.com/p/q"_s);
    ASSERT_EQ(cookies.size(), 1U);
    EXPECT_EQ(cookies[0].name, u"a"_s);
    EXPECT_EQ(cookies[0].value, u"\"b=c\""_s);
    EXPECT_EQ(cookies[0].domain, u"example.com"_s);
    EXPECT_EQ(cookies[0].path, u"/x"_s);
    EXPECT_TRUE(cookies[0].secure && cookies[0].httpOnly && !cookies[0].hostOnly);
    EXPECT_LT(cookies[0].expires, QDateTime::currentDateTimeUtc().addSecs(61));

    const Cookie plain = parsed(u"a="_s, u"http://h/p/q"_s).at(0);
    EXPECT_TRUE(plain.hostOnly);
    EXPECT_EQ(plain.path, u"/p"_s);
    EXPECT_FALSE(plain.expires.isValid());

    for (const QString& field : {u"a"_s, u"=b"_s, u"a=b; Domain=other.com"_s, u"a=b; Domain=com"_s,
                                 u"a=b; Domain=sub.www.example.com"_s, u"a=b; Domain=ample.com"_s,
                                 u"a=\x01"_s, u"a="_s + QString(5000, u'x')})
        EXPECT_TRUE(parsed(field, u"http://www.example.com/"_s).empty()) << qPrintable(field);
    EXPECT_TRUE(parsed(u"a=b; Domain=0.0.1"_s, u"http://127.0.0.1/"_s).empty());
    EXPECT_TRUE(parsed(u"a=b; Domain=co.uk"_s, u"http://co.uk/"_s).at(0).hostOnly);
}

TEST(NetCookies, ReadsAttributesAsBrowsersDo) {
    const QString safe = u"https://www.example.com/p/q"_s, plain = u"http://www.example.com/p/q"_s;
    struct Case {
        QString url, field;
        QString kept;  ///< Value, path and domain. Empty: it is refused.
    };
    for (const auto& [url, field, kept] : {
             Case{plain, u"a=b\tc"_s, u"b\tc /p www.example.com"_s},
             Case{plain, u"a=b; Path=/x; Path="_s, u"b /p www.example.com"_s},
             Case{plain, u"a=b; Path=/x; Path=relative"_s, u"b /p www.example.com"_s},
             Case{plain, u"a=b; Domain=example.com; Domain="_s, u"b /p www.example.com"_s},
             Case{plain, u"a=b; Secure"_s, {}},
             Case{safe, u"a=b; Secure"_s, u"b /p www.example.com"_s},
             Case{safe, u"__Secure-a=b"_s, {}},
             Case{safe, u"__secure-a=b; Secure"_s, u"b /p www.example.com"_s},
             Case{plain, u"__Secure-a=b; Secure"_s, {}},
             Case{safe, u"__Host-a=b; Secure; Path=/"_s, u"b / www.example.com"_s},
             Case{safe, u"__Host-a=b; Path=/"_s, {}},
             Case{safe, u"__host-a=b; Secure"_s, {}},
             Case{safe, u"__Host-a=b; Secure; Path=/p"_s, {}},
             Case{safe, u"__Host-a=b; Secure; Path=/; Domain=example.com"_s, {}},
             Case{u"https://top/"_s, u"__Host-a=b; Secure"_s, {}},
             Case{u"http://www.example.com./"_s, u"a=b; Domain=com."_s, {}},
             Case{u"http://www.example.com./"_s, u"a=b; Domain=example.com."_s,
                  u"b / example.com."_s},
             Case{u"http://www.example.co.uk./"_s, u"a=b; Domain=co.uk."_s, {}},
             Case{u"http://co.uk./"_s, u"a=b; Domain=co.uk."_s, u"b / co.uk."_s},
         }) {
        const auto cookies = parsed(field, url);
        QStringList found;
        for (const Cookie& each : cookies)
            found << each.value + u' ' + each.path + u' ' + each.domain;
        EXPECT_EQ(found.join(u'|'), kept) << qPrintable(url + u' ' + field);
    }
}

/// Somebody on the way who can answer for "http" must not change what was said under TLS.
TEST(NetCookies, PlainAnswersLeaveSecureCookiesAlone) {
    const auto storage = platform::makeCookieStorage({});
    const QString safe = u"https://www.example.com/a/b"_s, plain = u"http://www.example.com/a/b"_s;
    store(*storage, u"id=mine; Path=/a; Secure; Domain=example.com"_s, safe);
    for (const QString& planted :
         {u"id=planted; Path=/a"_s, u"id=planted; Path=/a/b"_s, u"id=; Path=/a; Max-Age=0"_s,
          u"id=planted; Path=/a; Domain=example.com"_s}) {
        store(*storage, planted, plain);
        EXPECT_EQ(sent(*storage, safe), "id=mine") << planted.toStdString();
    }
    store(*storage, u"id=other; Path=/"_s, plain);
    store(*storage, u"free=1; Path=/a"_s, plain);
    EXPECT_EQ(sent(*storage, safe), "id=mine free=1 id=other");
    store(*storage, u"id=changed; Path=/a; Domain=example.com"_s, safe);
    EXPECT_EQ(sent(*storage, safe), "id=changed free=1 id=other");
}

TEST(NetCookies, SendsWhatBelongs) {
    const auto storage = platform::makeCookieStorage({});
    const QString url = u"https://www.example.com/a/b"_s;
    store(*storage, u"short=1; Path=/"_s, url);
    store(*storage, u"long=1; Path=/a"_s, url);
    store(*storage, u"wide=1; Path=/; Domain=example.com"_s, url);
    store(*storage, u"safe=1; Path=/; Secure"_s, url);
    EXPECT_EQ(sent(*storage, url), "long=1 short=1 wide=1 safe=1");
    EXPECT_EQ(sent(*storage, u"http://www.example.com"_s), "short=1 wide=1");
    EXPECT_EQ(sent(*storage, u"http://www.example.com/ab"_s), "short=1 wide=1");
    EXPECT_EQ(sent(*storage, u"http://other.example.com/a"_s), "wide=1");
    EXPECT_EQ(sent(*storage, u"http://example.org/a"_s), "");

    store(*storage, u"short=2; Path=/"_s, url);
    store(*storage, u"long=; Path=/a; Max-Age=0"_s, url);
    EXPECT_EQ(sent(*storage, url), "short=2 wide=1 safe=1");
    storage->deleteCookie(storage->cookiesForUrl(Url::parse(url).value()).at(0));
    EXPECT_EQ(sent(*storage, url), "wide=1 safe=1");
}

TEST(NetCookies, DropsTheLeastUsedWhenFull) {
    const auto storage = platform::makeCookieStorage({});
    const QString url = u"http://crowded.example/"_s;
    store(*storage, u"first=1"_s, url);
    store(*storage, u"unused=1; Path=/unused"_s, url);
    for (int i = 0; i < 178; ++i)
        store(*storage, u"c%1=1"_s.arg(i), url);
    EXPECT_THAT(sent(*storage, url), testing::StartsWith("first=1 c0=1"));
    store(*storage, u"last=1"_s, url);
    EXPECT_EQ(storage->cookiesForUrl(Url::parse(url + u"unused"_s).value()).size(), 180U);
    EXPECT_THAT(sent(*storage, url), testing::StartsWith("first=1 c0=1"));

    for (int i = 0; i < 3000; ++i)
        store(*storage, u"a=1"_s, u"http://h%1.example/"_s.arg(i));
    EXPECT_EQ(sent(*storage, url), "");
    EXPECT_EQ(sent(*storage, u"http://h0.example/"_s), "a=1");
}

TEST(NetCookies, KeepsPersistentOnesInAFile) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Cookies.plist"_s);
    const QString url = u"https://www.example.com/a"_s;
    {
        const auto storage = platform::makeCookieStorage(path);
        store(*storage, u"kept=\u00e9; Max-Age=1000; Secure; Domain=example.com"_s, url);
        store(*storage, u"session=1"_s, url);
    }
    EXPECT_EQ(QFile::permissions(path) & 0x0fff, QFile::ReadUser | QFile::WriteUser);
    {
        const auto storage = platform::makeCookieStorage(path);
        EXPECT_EQ(sent(*storage, u"https://x.example.com/"_s), "kept=\u00e9");
        EXPECT_EQ(sent(*storage, u"http://x.example.com/"_s), "");
    }
    {
        const QByteArray good = platform::readFile(path, 1 << 20).data;
        std::unique_ptr<platform::CookieStorage> storage;
        {
            const support::NoDescriptors none;
            storage = platform::makeCookieStorage(path);
        }
        store(*storage, u"new=1; Max-Age=1000"_s, url);
        EXPECT_EQ(sent(*storage, url), "new=1");
        storage.reset();
        EXPECT_EQ(platform::readFile(path, 1 << 20).data, good) << "it could not be read";
    }
    QFile damaged(path);
    ASSERT_TRUE(damaged.open(QFile::WriteOnly));
    damaged.write("<plist>");
    damaged.close();
    EXPECT_EQ(sent(*platform::makeCookieStorage(path), url), "");
    EXPECT_EQ(QDir(folder.path()).entryList({u"*.damaged-*"_s}).size(), 1);
}

}  // namespace
