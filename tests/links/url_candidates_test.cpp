#include "links/recognition/url_candidates.h"

#include <gtest/gtest.h>

#include "links/recognition/quoted_links.h"
#include "support/printers.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QStringList allOf(links::URLCandidates candidates) {
    QStringList all;
    while (auto candidate = candidates.next())
        all.append(*candidate);
    return all;
}

TEST(URLCandidates, QuotedLinks) {
    struct Case {
        QString text;
        QStringList links;
    };
    const Case cases[] = {
        {uR"(<a href="http://a.example/x.zip">x</a> <a href='https://b.example/y'>y</a>)"_s,
         {u"http://a.example/x.zip"_s, u"https://b.example/y"_s}},
        {u"http://a.example/x.zip"_s, {u"http://a.example/x.zip"_s}},
        {u"\"HTTP://a.example/x.zip'"_s, {u"HTTP://a.example/x.zip"_s}},
        {u"http://bare.example/ 'http://quoted.example/'"_s, {u"http://quoted.example/"_s}},
        {u"it's 'quoted'"_s, {u"it's 'quoted'"_s}},
        {u"'http://'"_s, {u"'http://'"_s}},
        {u""_s, {u""_s}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(links::unearthedURLStrings(c.text), c.links) << qPrintable(c.text);
}

TEST(URLCandidates, RangeGroups) {
    struct Case {
        QString group;
        QStringList pieces;
    };
    const Case cases[] = {
        {u"{1-3}"_s, {u"1"_s, u"2"_s, u"3"_s}},
        {u"{08-11}"_s, {u"08"_s, u"09"_s, u"10"_s, u"11"_s}},
        {u"{9-10}"_s, {u"9"_s, u"10"_s}},
        {u"{ 01 - 2x }"_s, {u"01"_s, u"02"_s}},
        {u"{a-c}"_s, {u"a"_s, u"b"_s, u"c"_s}},
        {u"{Z-a}"_s, {u"Z"_s, u"["_s, u"\\"_s, u"]"_s, u"^"_s, u"_"_s, u"`"_s, u"a"_s}},
        {u"{0-0}"_s, {u"0"_s}},
        {u"{a-2}"_s, {u"0"_s, u"1"_s, u"2"_s}},
        {u"{9-A}"_s, {u"9"_s, u":"_s, u";"_s, u"<"_s, u"="_s, u">"_s, u"?"_s, u"@"_s, u"A"_s}},
        {u"{1-2-3}"_s, {u"1-2-3"_s}},
        {u"{,x}"_s, {u""_s, u"x"_s}},
        {u"{}"_s, {u""_s}},
        {u"{ alpha , beta }"_s, {u"alpha"_s, u"beta"_s}},
        {u"{3-1,x,5-}"_s, {u"x"_s}},
        {u"{3-1}"_s, {u"{3-1}"_s}},
        {u"{-5}"_s, {u"{-5}"_s}},
        {u"{5-}"_s, {u"{5-}"_s}},
        {u"{-}"_s, {u"{-}"_s}},
        {u"{3-1}{1-2}"_s, {u"{3-1}{1-2}"_s}},
        {u"{1-2}{a-b}"_s, {u"1a"_s, u"1b"_s, u"2a"_s, u"2b"_s}},
        {u"{1-2}{2-1}{x}"_s, {u"1{2-1}{x}"_s, u"2{2-1}{x}"_s}},
        {u"{a{b,c}d,e}"_s, {u"abd"_s, u"ae"_s, u"cd,e}"_s}},
        {u"{z-|}}"_s, {u"z}"_s, u""_s, u"|}"_s}},
        {u"{1"_s, {u"{1"_s}},
        {u"1}"_s, {u"1}"_s}},
        {u"}{1-2}"_s, {u"}1"_s, u"}2"_s}},
        {u"{2147483647-2147483648}"_s, {u"2147483647"_s, u"-2147483648"_s}},
        {u"{99999999999999999998-99999999999999999999}"_s, {u"-1"_s}},
    };
    for (const Case& c : cases) {
        QStringList expected;
        for (const QString& piece : c.pieces)
            expected.append(u"http://h/"_s + piece + u".zip"_s);
        EXPECT_EQ(links::explodedURLStrings(u"http://h/"_s + c.group + u".zip"_s), expected)
            << qPrintable(c.group);
    }
    for (const QString& series : {u"a"_s, u"a{}"_s, u"a{3-1}{1-9}"_s, u"a{01-10,x}{a-c}{"_s})
        EXPECT_EQ(links::numberOfExplodedURLs(series), links::explodedURLStrings(series).size());
    EXPECT_EQ(links::numberOfExplodedURLs(u"{1-999999999999}{1-999999999999}"_s),
              std::numeric_limits<quint64>::max());
    EXPECT_EQ(links::explodedURLStrings(QStringList{u"a{1,2}"_s, u"b"_s}),
              (QStringList{u"a1"_s, u"a2"_s, u"b"_s}));
}

TEST(URLCandidates, HugeRangesAreNotWorkedOutAhead) {
    links::ExplodedURLs exploded(
        u"{1-2000000000}/{0000000000000-9999999999999}/{a-z}"_s.repeated(3));
    for (int count = 0; count < 1000; ++count)
        ASSERT_TRUE(exploded.next());
    EXPECT_TRUE(exploded.next()->startsWith(u"1/0000000000000/a1/0000000000000/a1/00000000000"));
}

TEST(URLCandidates, DeepGroupsStayWithinMemory) {
    const QString flat = u"{a,b}"_s.repeated(50'000);
    links::ExplodedURLs flatly(flat);
    EXPECT_EQ(flatly.next(), QString(50'000, u'a'));
    EXPECT_EQ(flatly.next(), QString(49'999, u'a') + u'b');

    const QString nested = u"{"_s.repeated(50'000) + u"x"_s + u"}"_s.repeated(50'000);
    EXPECT_EQ(links::explodedURLStrings(u"{{{x}}}"_s), QStringList{u"x"_s});
    EXPECT_EQ(links::explodedURLStrings(nested).size(), 1);
}

TEST(URLCandidates, FromText) {
    const QString text =
        u" http://a.example/1.zip \r\n\n \u200B\nhxxp://b.example/{1-2}\u2028"
        u"<a href='http://c.example/{a,b}'>{1-9}</a>\n//d.example/\n'http://e/' 'http://f/'\n"_s;
    const QStringList expected{u"http://a.example/1.zip"_s,
                               u"http://b.example/1"_s,
                               u"http://b.example/2"_s,
                               u"http://c.example/a"_s,
                               u"http://c.example/b"_s,
                               u"http://d.example/"_s,
                               u"http://e/"_s,
                               u"http://f/"_s};
    EXPECT_EQ(allOf(links::URLCandidates::fromString(text, true)), expected);
    EXPECT_EQ(allOf(links::URLCandidates::fromCollection({u" a\nb "_s, u"  "_s, u"c"_s}, true)),
              (QStringList{u"a\nb"_s, u"c"_s}));
    EXPECT_TRUE(allOf(links::URLCandidates::fromString(u"\n \n"_s, true)).isEmpty());
}

}  // namespace
