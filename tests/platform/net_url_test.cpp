#include <gtest/gtest.h>

#include <QStringList>

#include "platform/net/url.h"

using namespace Qt::Literals::StringLiterals;
using platform::Url;

namespace {

struct Resolution {
    QString reference, expected;
};

// From RFC 3986, 5.4, at least one of each kind, and what lies beyond them.
const Resolution resolutions[] = {
    {u"g:h"_s, u"g:h"_s},
    {u"g"_s, u"http://a/b/c/g"_s},
    {u"./g"_s, u"http://a/b/c/g"_s},
    {u"/g"_s, u"http://a/g"_s},
    {u"/./g"_s, u"http://a/g"_s},
    {u"/../g"_s, u"http://a/g"_s},
    {u"../.."_s, u"http://a/"_s},
    {u"./g/."_s, u"http://a/b/c/g/"_s},
    {u"g.."_s, u"http://a/b/c/g.."_s},
    {u"g;x=1/../y"_s, u"http://a/b/c/y"_s},
    {u"//g"_s, u"http://g"_s},
    {u"#s"_s, u"http://a/b/c/d;p?q#s"_s},
    {u"g?y#s"_s, u"http://a/b/c/g?y#s"_s},
    {u"g;x?y#s"_s, u"http://a/b/c/g;x?y#s"_s},
    {u""_s, u"http://a/b/c/d;p?q"_s},
    {u"."_s, u"http://a/b/c/"_s},
    {u".."_s, u"http://a/b/"_s},
    {u"../g"_s, u"http://a/b/g"_s},
    {u"../../g"_s, u"http://a/g"_s},
    {u"../../../../g"_s, u"http://a/g"_s},
    {u"..g"_s, u"http://a/b/c/..g"_s},
    {u"g/../h"_s, u"http://a/b/c/h"_s},
    {u"g?y/../x"_s, u"http://a/b/c/g?y/../x"_s},
    {u"http:g"_s, u"http:g"_s},
    {u"?"_s, u"http://a/b/c/d;p?"_s},
    {u"//user@h:8/%7e/../x"_s, u"http://user@h:8/x"_s},
};

TEST(NetUrl, ResolvesReferences) {
    const Url base = Url::parse(u"http://a/b/c/d;p?q#old"_s).value();
    for (const Resolution& each : resolutions) {
        const auto url = base.resolved(each.reference);
        ASSERT_TRUE(url) << qPrintable(each.reference);
        EXPECT_EQ(url->absoluteString(), each.expected) << qPrintable(each.reference);
    }
    EXPECT_EQ(Url::parse(u"http://a"_s)->resolved(u"g"_s)->absoluteString(), u"http://a/g"_s);
    EXPECT_EQ(Url::parse(u"x:/a/b"_s)->resolved(u"/.//c"_s)->absoluteString(), u"x:/.//c"_s);
    EXPECT_FALSE(base.resolved(u"a b"_s));
}

TEST(NetUrl, RefusesWhatIsNoReference) {
    for (const QString& text :
         {u"http://a/b c"_s, u"http://a/%4"_s, u"http://a/%zz"_s, u"http://a/\u00e9"_s,
          u"http://a/\n"_s, u"http://a/<b>"_s, u"http://[::1/x"_s, u"http://a:b/"_s,
          u"http://a/x#y#z"_s, u"1a:b c"_s, u"http://a/\\b"_s, u"http://a\0b/"_s, u"http://a/|"_s,
          u"http://a/"_s + QString(Url::longest, u'x')}) {
        EXPECT_FALSE(Url::parse(text)) << qPrintable(text.left(99));
    }
}

/// "-" for what is not there.
QString partsOf(const Url& url) {
    const QString none = u"-"_s, port = url.port() ? QString::number(*url.port()) : none;
    return QStringList{url.scheme(),
                       url.user(),
                       url.password(),
                       url.host(),
                       port,
                       url.path(),
                       url.lastPathComponent(),
                       url.query().value_or(none),
                       url.fragment().value_or(none)}
        .join(u'|');
}

TEST(NetUrl, AnswersItsParts) {
    const Resolution table[] = {
        {u"HTTP://me:a%3Ab:c@Example.com:8080/a%20b/c.txt?x=%20#f"_s,
         u"HTTP|me|a:b:c|Example.com|8080|/a b/c.txt|c.txt|x=%20|f"_s},
        {u"https://[::1]/"_s, u"https|||::1|-|/|/|-|-"_s},
        {u"http://h:/%C3%A9/%FF//"_s, u"http|||h|-|/%C3%A9/%FF//|%FF|-|-"_s},
        {u"http://h?"_s, u"http|||h|-||||-"_s},
        {u"mailto:a@b"_s, u"mailto||||-|a@b|a@b|-|-"_s},
        {u"a/b%2Fc"_s, u"||||-|a/b/c|b/c|-|-"_s},
        {u"http://h:99999999999/"_s, u"http|||h|2147483647|/|/|-|-"_s},
    };
    for (const Resolution& each : table) {
        const auto url = Url::parse(each.reference);
        ASSERT_TRUE(url) << qPrintable(each.reference);
        EXPECT_EQ(url->absoluteString(), each.reference);
        EXPECT_EQ(partsOf(*url), each.expected);
    }
}

TEST(NetUrl, GuessesWhatAUserMeant) {
    const Resolution table[] = {
        {u" http://h/a b "_s, u"http://h/a%20b"_s},
        {u"http://b\u00fccher.example:81/\u00e9?q=\u00e9#\u00e9"_s,
         u"http://xn--bcher-kva.example:81/%C3%A9?q=%C3%A9#%C3%A9"_s},
        {u"http://h/100%/%41"_s, u"http://h/100%25/%41"_s},
        {u"http://u\u00e9:p@w@h/[x]"_s, u"http://u%C3%A9:p%40w@h/%5Bx%5D"_s},
        {u"http://h/a#b#c"_s, u"http://h/a#b%23c"_s},
        {u"http://h/a%20b"_s, u"http://h/a%20b"_s},
        {u"http://[fe80::1%25eth0]:8/x"_s, u"http://[fe80::1%25eth0]:8/x"_s},
        {u"http://[fe80::1%eth0]/x"_s, u"http://[fe80::1%25eth0]/x"_s},
    };
    for (const Resolution& each : table) {
        const auto url = Url::parseLenient(each.reference);
        ASSERT_TRUE(url) << qPrintable(each.reference);
        EXPECT_EQ(url->absoluteString(), each.expected);
    }
    EXPECT_FALSE(Url::parseLenient(u"http://a b/"_s));
    EXPECT_FALSE(Url::parseLenient(u"http://h:port/"_s));
    EXPECT_FALSE(Url::parseLenient(u"http://[fe80::1%25]/"_s));
    EXPECT_FALSE(Url::parseLenient(u"http://[fe80::1%25a/b]/"_s));
}

TEST(NetUrl, TurnsFilesIntoUrlsAndBack) {
    const QString path = u"/tmp/a b/100%?#\u00e9"_s;
    const Url url = Url::fromFilePath(path);
    EXPECT_EQ(url.absoluteString(), u"file:///tmp/a%20b/100%25%3F%23%C3%A9"_s);
    EXPECT_EQ(url.filePath(), path);
    EXPECT_EQ(Url::parse(u"file://localhost/x"_s)->filePath(), u"/x"_s);
    EXPECT_EQ(Url::parse(u"file://elsewhere/x"_s)->filePath(), QString());
    EXPECT_EQ(Url::parse(u"file:///x%00y"_s)->filePath(), QString());
}

TEST(NetUrl, KnowsWhatMayTravel) {
    const Url url = Url::parse(u"http://me:secret@h:80/p?q#f"_s).value();
    EXPECT_EQ(url.forTransfer().absoluteString(), u"http://h:80/p?q"_s);
    EXPECT_TRUE(url.hasSameOrigin(Url::parse(u"HTTP://H/other"_s).value()));
    EXPECT_FALSE(url.hasSameOrigin(Url::parse(u"https://h:80/p"_s).value()));
    EXPECT_FALSE(url.hasSameOrigin(Url::parse(u"http://h:81/p"_s).value()));
}

}  // namespace
