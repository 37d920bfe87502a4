#include <gtest/gtest.h>

#include <QByteArray>
#include <QStringList>
#include <cstring>

#include "platform/text/comparison.h"
#include "platform/text/regular_expression.h"

using namespace Qt::Literals::StringLiterals;
using platform::RegularExpression;

namespace {

int compareKeys(const QString& a, const QString& b) {
    const QByteArray x = platform::naturalSortKey(a), y = platform::naturalSortKey(b);
    const int order = std::memcmp(x.constData(), y.constData(),
                                  static_cast<std::size_t>(std::min(x.size(), y.size())));
    return (order > 0) - (order < 0);
}

TEST(NaturalOrder, IsTotalAndTheSameByKeys) {
    const QStringList ordered{
        u"1"_s,      u"2 b"_s,    u"10"_s,    u"a 9.zip"_s,        u"a 10.zip"_s,
        u"Äpfel"_s,  u"apfelx"_s, u"file1"_s, u"file02"_s,         u"file2.5"_s,
        u"file11"_s, u"z"_s,      u"Z"_s,     QString(1000, u'z'), u"ж"_s,
        u"漢"_s,     QString()};
    for (qsizetype i = 0; i < ordered.size(); ++i) {
        for (qsizetype j = 0; j < ordered.size(); ++j) {
            const int expected = (i > j) - (i < j);
            EXPECT_EQ(platform::compareStringsNaturally(ordered[i], ordered[j]), expected)
                << ordered[i].toStdString() << " ? " << ordered[j].toStdString();
            EXPECT_EQ(compareKeys(ordered[i], ordered[j]), expected)
                << ordered[i].toStdString() << " ? " << ordered[j].toStdString();
        }
    }
    EXPECT_NE(platform::compareStringsNaturally(u"file1"_s, u"file01"_s), 0);
}

TEST(FoldedSearch, IgnoresCaseDiacriticsAndWidthOnly) {
    struct Case {
        QString text, needle;
        bool found;
    };
    const QList<Case> cases{
        {u"Movie.MKV"_s, u"mkv"_s, true},  {u"Ünïcode"_s, u"unicode"_s, true},
        {u"unicode"_s, u"ÜNÏ"_s, true},    {u"Łódź"_s, u"odz"_s, true},
        {u"e\u0301te"_s, u"ÉTÉ"_s, true},  {u"ＦＵＬＬ　width"_s, u"full w"_s, true},
        {u"ｶﾞｷﾞ"_s, u"ガギ"_s, true},      {u"ガ"_s, u"カ"_s, false},
        {u"Straße"_s, u"STRASSE"_s, true}, {u"कि"_s, u"का"_s, false},
        {u"abc"_s, u"äd"_s, false},        {u""_s, u"a"_s, false},
    };
    for (const Case& test : cases)
        EXPECT_EQ(platform::containsFolded(test.text, test.needle), test.found)
            << test.text.toStdString() << " / " << test.needle.toStdString();
}

constexpr auto option(RegularExpression::Option value) {
    return static_cast<unsigned>(value);
}

TEST(RegularExpression, AnswersPositionsInUtf16AndGroupsThatTookNoPart) {
    const RegularExpression expression(u"(a)|(B+)"_s);
    EXPECT_EQ(expression.groupCount(), 2);
    const auto match = expression.firstMatch(u"😀 bbx"_s);
    ASSERT_TRUE(match);
    ASSERT_EQ(match->groups.size(), 3U);
    EXPECT_EQ(match->groups[0]->start, 3);
    EXPECT_EQ(match->groups[0]->length, 2);
    EXPECT_FALSE(match->groups[1]);
    EXPECT_EQ(expression.firstCapture(u"xbb"_s, 2), u"bb"_s);
    EXPECT_EQ(expression.firstCapture(u"xbb"_s, 1), std::nullopt);
    EXPECT_EQ(expression.firstCapture(u"xbb"_s, 3), std::nullopt);
    EXPECT_EQ(expression.firstCapture(u"x"_s, 0), std::nullopt);
}

TEST(RegularExpression, ObeysItsOptions) {
    EXPECT_FALSE(RegularExpression(u"A"_s, option(RegularExpression::Option::CaseSensitive))
                     .firstMatch(u"a"_s));
    EXPECT_FALSE(RegularExpression(u"a.b"_s).firstMatch(u"a\nb"_s));
    EXPECT_TRUE(RegularExpression(u"a.b"_s, option(RegularExpression::Option::DotMatchesAll))
                    .firstMatch(u"a\nb"_s));
    EXPECT_TRUE(RegularExpression(u"^b"_s, option(RegularExpression::Option::Multiline))
                    .firstMatch(u"a\nb"_s));
    EXPECT_FALSE(RegularExpression::compile(u"(a"_s));
}

TEST(RegularExpression, GivesUpOnARunawayPattern) {
    auto expression = *RegularExpression::compile(u"(a+a+)+b"_s);
    expression.setTimeLimit(0.05);
    const QString subject(60, u'a');
    EXPECT_FALSE(expression.firstMatch(subject));
    EXPECT_TRUE(expression.timedOut());
    EXPECT_TRUE(expression.matches(subject).empty());
    EXPECT_EQ(expression.replaceAll(subject, u"x"_s), std::nullopt);
    EXPECT_TRUE(expression.timedOut());
    EXPECT_TRUE(expression.firstMatch(u"aab"_s));
    EXPECT_FALSE(expression.timedOut());
}

}  // namespace
