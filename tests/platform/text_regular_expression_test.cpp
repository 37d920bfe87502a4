#include "platform/text/regular_expression.h"

#include <gtest/gtest.h>

#include <thread>

using namespace Qt::Literals::StringLiterals;
using platform::RegularExpression;

namespace {

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

TEST(RegularExpression, SearchesOnWithWhatStandsBeforeInView) {
    const RegularExpression expression(u"(?<=a)b"_s);
    EXPECT_EQ(expression.firstMatch(u"abab"_s, 1)->groups[0]->start, 1);
    EXPECT_EQ(expression.firstMatch(u"abab"_s, 2)->groups[0]->start, 3);
    EXPECT_FALSE(expression.firstMatch(u"abab"_s, 4));
    EXPECT_FALSE(expression.firstMatch(u"abab"_s, 99));
    EXPECT_EQ(RegularExpression(u"x*"_s).matches(u"axx"_s).size(), 3U);
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

TEST(RegularExpression, Replaces) {
    const RegularExpression expression(u"(\\w)(\\d)"_s);
    EXPECT_EQ(expression.replaceAll(u"a1 b2"_s, u"$2$1\\$"_s), u"1a$ 2b$"_s);
    EXPECT_EQ(expression.replaceAll(u"none"_s, u"$1"_s), u"none"_s);
    EXPECT_EQ(expression.replaceAll(u"a1"_s, u"$9"_s), std::nullopt);
    EXPECT_EQ(expression.replaceAll(u"a1"_s, u""_s), u""_s);
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

TEST(RegularExpression, CopiesServeSeveralThreads) {
    const RegularExpression shared(u"(\\d+)"_s);
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([copy = shared] {
            for (int i = 0; i < 200; ++i)
                EXPECT_EQ(copy.firstCapture(u"x%1y"_s.arg(i), 1), QString::number(i));
        });
    }
}

}  // namespace
