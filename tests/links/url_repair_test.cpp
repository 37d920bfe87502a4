#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "links/page_rules_support.h"
#include "links/repair/percent_escapes.h"
#include "links/repair/replacement_rules.h"
#include "links/repair/url_unescaping.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"
#include "support/printers.h"

using namespace Qt::Literals::StringLiterals;

namespace {

struct Case {
    QString given;
    QString expected;
};

TEST(URLRepair, PercentEscapes) {
    const Case cases[] = {
        {u"plain"_s, u"plain"_s},
        {u"a%20b"_s, u"a b"_s},
        {u"%C3%A4-\u00E4-%e2%82%ac"_s, u"ä-ä-€"_s},
        {u"%E4.zip"_s, u"ä.zip"_s},
        {u"%C3.zip"_s, u"Ã.zip"_s},
        {u"%C3x%A4"_s, u"Ãx¤"_s},
        {u"%ED%A0%80"_s, u"\u00ED\u00A0\u0080"_s},
        {u"100%"_s, u"100%"_s},
        {u"%4"_s, u"%4"_s},
        {u"%20%zz"_s, u"%20%zz"_s},
        {u"%00"_s, QString(QChar(u'\0'))},
        {u"%EF%BB%BFx"_s, u"\uFEFFx"_s},
        {u"a+%2B"_s, u"a++"_s},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(links::stringByReplacingPercentEscapesIfNecessary(c.given), c.expected)
            << qPrintable(c.given);
    }
    const Case plusCases[] = {{u"a+b%2Bc"_s, u"a b+c"_s},
                              {u"+a+"_s, u"a"_s},
                              {u"+++"_s, u"+++"_s},
                              {u"+ +%41"_s, u"A"_s}};
    for (const Case& c : plusCases) {
        EXPECT_EQ(links::stringByReplacingPlusAndPercentEscapesIfNecessary(c.given), c.expected)
            << qPrintable(c.given);
    }
}

TEST(URLRepair, URLEncodedString) {
    const Case cases[] = {
        {u"http://host/a b.zip"_s, u"http://host/a%20b.zip"_s},
        {u"http://host/\u00E4%20\U0001F4BE"_s, u"http://host/%C3%A4%20%F0%9F%92%BE"_s},
        {u"http://host/100%#a#b"_s, u"http://host/100%25#a%23b"_s},
        {u"http://u@[::1]:8/[x]"_s, u"http://u@[::1]:8/%5Bx%5D"_s},
        {u"http://a[/x]"_s, u"http://a%5B/x%5D"_s},
        {u"{\"<>\\^`|}\n"_s, u"%7B%22%3C%3E%5C%5E%60%7C%7D%0A"_s},
    };
    for (const Case& c : cases)
        EXPECT_EQ(links::URLEncodedString(c.given), c.expected) << qPrintable(c.given);
    EXPECT_EQ(links::URLEncodedString(u"x\xD800y"_s), std::nullopt);
}

struct RepairCase {
    QString given;
    QString skipping;
    QString keeping;
};

TEST(URLRepair, UnescapedAndRepaired) {
    const QString redirect = u"http://r.example/go?to=http%3A%2F%2Fhost%2Fx.zip"_s;
    const QString nested = u"http://r.example/?u=http://s.example/?v=HTTPS://t.example/x"_s;
    const QString quoted = u"http://a.example/' http://b.example/"_s;
    const RepairCase cases[] = {
        {u"http%3A%2F%2Fhost%2Fa%20b.zip"_s, u"http://host/a b.zip"_s, u"http://host/a b.zip"_s},
        {u"%2F%2Fhost%2Fx"_s, u"http://host/x"_s, u"http://host/x"_s},
        {u"http://host/a%20b.zip"_s, u"http://host/a%20b.zip"_s, u"http://host/a%20b.zip"_s},
        {redirect, u"http://host/x.zip"_s, redirect},
        {nested, u"HTTPS://t.example/x"_s, nested},
        {quoted, quoted, quoted},
        {u"http://a/ http://b/"_s, u"http://a/ http://b/"_s, u"http://a/ http://b/"_s},
        {u"http://host/a?x=1&amp;y=2&AMP;"_s, u"http://host/a?x=1&y=2&AMP;"_s,
         u"http://host/a?x=1&y=2&AMP;"_s},
        {u"//host/x.zip"_s, u"http://host/x.zip"_s, u"http://host/x.zip"_s},
        {u"://host/x.zip"_s, u"http://host/x.zip"_s, u"http://host/x.zip"_s},
        {u"/host/x.zip"_s, u"/host/x.zip"_s, u"/host/x.zip"_s},
        {u"hxxps://host/x"_s, u"https://host/x"_s, u"https://host/x"_s},
        {u"h**p://host/x"_s, u"http://host/x"_s, u"http://host/x"_s},
        {u"hop://host/x"_s, u"http://host/x"_s, u"http://host/x"_s},
        {u"hp://host/x"_s, u"hp://host/x"_s, u"hp://host/x"_s},
        {u"ftp://host/x"_s, u"ftp://host/x"_s, u"ftp://host/x"_s},
        {u"HTTP://host/x"_s, u"httP://host/x"_s, u"httP://host/x"_s},
        {u"Https://host/x"_s, u"https://host/x"_s, u"https://host/x"_s},
        {u"HTTPS://host/x"_s, u"httPS://host/x"_s, u"httPS://host/x"_s},
        {u"http:\\/\\/host\\/x"_s, u"http://host/x"_s, u"http://host/x"_s},
    };
    const links::ReplacementRules skipping(true, {});
    const links::ReplacementRules keeping(false, {});
    for (const RepairCase& c : cases) {
        SCOPED_TRACE(qPrintable(c.given));
        EXPECT_EQ(skipping.applied(links::unescapedURLString(c.given, true)), c.skipping);
        EXPECT_EQ(keeping.applied(links::unescapedURLString(c.given, false)), c.keeping);
    }
}

class UserRules : public testing::Test {
protected:
    static QVariantMap literal(const QString& query, const QString& replacement) {
        return {{u"Query"_s, query}, {u"Replacement"_s, replacement}};
    }
    static QVariantMap expression(const QString& query, const QString& replacement) {
        QVariantMap rule = literal(query, replacement);
        rule[u"Regular Expression"_s] = true;
        return rule;
    }

    links::LogRecorder log_;
};

TEST_F(UserRules, RunInOrderBehindOurs) {
    const QVariantList list{literal(u"HOST"_s, u"b"_s), expression(u"/(B)/(x)"_s, u"/$2/$1"_s)};
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Replacements.plist"_s);
    ASSERT_FALSE(platform::writeFileAtomically(path, platform::writePropertyList(list)));
    const links::ReplacementRules rules(true, links::replacementRulesAtPath(path));
    EXPECT_EQ(rules.applied(u"hxxp://host/x"_s), u"http://x/b");
    EXPECT_FALSE(links::replacementRulesAtPath(path + u"x"_s).isValid());

    QVariantMap rule = expression(u"h.st"_s, u"b"_s);
    rule[u"Regular Expression"_s] = u"NO"_s;
    EXPECT_EQ(links::ReplacementRules(true, QVariantList{rule}).applied(u"http://host/h.st"_s),
              u"http://host/b");
    rule[u"Regular Expression"_s] = u"YES"_s;
    EXPECT_EQ(links::ReplacementRules(true, QVariantList{rule}).applied(u"http://host/"_s),
              u"http://b/");
}

TEST_F(UserRules, UnusableOnesChangeNothing) {
    QVariantMap lacking = expression(u"x"_s, u"y"_s);
    lacking.remove(u"Query"_s);
    const QVariantList list{QVariant(7),
                            QVariantMap{{u"Query"_s, u"x"_s}},
                            literal({}, u"!"_s),
                            expression(u"(open"_s, u"!"_s),
                            lacking,
                            literal(u"x"_s, u"z"_s)};
    const links::ReplacementRules rules(true, list);
    EXPECT_EQ(rules.applied(u"http://host/x"_s), u"http://host/z");
    EXPECT_EQ(rules.applied(u"http://host/x"_s), u"http://host/z");
    EXPECT_EQ(log_.lines().filter(u"ignoring regular expression exception: "_s).size(), 2);
    EXPECT_EQ(links::ReplacementRules(true, u"no list"_s).applied(u"//h"_s), u"http://h");
}

}  // namespace
