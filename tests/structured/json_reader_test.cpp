#include "structured/json/json_reader.h"

#include <gtest/gtest.h>

#include "structured/json/bounds.h"

using namespace Qt::Literals::StringLiterals;

namespace structured {
namespace {

TEST(JsonReader, BuildsTheTreeWithItsTypes) {
    const auto result =
        readJson(R"({"i":-9223372036854775808,"u":18446744073709551615,"d":1.5e3,"b":[true,false],)"
                 R"("n":null,"s":"\u00e4\ud83d\ude00\/\n","e":{}})");
    ASSERT_TRUE(result.value.isValid()) << result.error.text.toStdString();
    const QVariantMap map = result.value.toMap();
    EXPECT_EQ(map[u"i"_s], QVariant(std::numeric_limits<qint64>::min()));
    EXPECT_EQ(map[u"u"_s], QVariant(18446744073709551615.0));
    EXPECT_EQ(map[u"d"_s].typeId(), QMetaType::Double);
    EXPECT_EQ(map[u"b"_s], QVariant(QVariantList{true, false}));
    EXPECT_EQ(map[u"n"_s].typeId(), QMetaType::Nullptr);
    EXPECT_EQ(map[u"s"_s], QVariant(u"\u00e4\U0001F600/\n"_s));
    EXPECT_EQ(map[u"e"_s], QVariant(QVariantMap()));
}

struct Refusal {
    const char* name;
    QByteArray text;
    qint64 line, column;
    const char* reason;
};

class JsonRefusal : public testing::TestWithParam<Refusal> {};

TEST_P(JsonRefusal, SaysWhatIsWrongAndWhere) {
    const auto result = readJson(GetParam().text);
    EXPECT_FALSE(result.value.isValid());
    EXPECT_EQ(result.error.line, GetParam().line);
    EXPECT_EQ(result.error.column, GetParam().column);
    EXPECT_TRUE(result.error.text.contains(QLatin1StringView(GetParam().reason)))
        << result.error.text.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Texts, JsonRefusal,
    testing::Values(
        Refusal{"scalar", "1", 1, 1, "must be an object"},
        Refusal{"string", " \"a\" ", 1, 2, "must be an object"},
        Refusal{"empty", "", 1, 1, "ends before"},
        Refusal{"openObject", "{\n\"a\" : [1", 2, 9, "ends before"},
        Refusal{"openString", "[\"ab]", 1, 6, "no closing quotation mark"},
        Refusal{"stringOverLines", "{\r\n\"a\" : \"x\r\n}", 2, 9, "on its line"},
        Refusal{"tabInString", "[\"a\tb\"]", 1, 4, "written as \\t"},
        Refusal{"controlInString", "[\"\x01\"]", 1, 3, "control character"},
        Refusal{"badEscape", "[\"^\\w+\"]", 1, 5, "double it"},
        Refusal{"shortEscape", "[\"\\u12\"]", 1, 7, "four hexadecimal"},
        Refusal{"loneHighSurrogate", "[\"\\ud83dx\"]", 1, 9, "half a character"},
        Refusal{"loneLowSurrogate", "[\"\\ude00\"]", 1, 8, "half a character"},
        Refusal{"malformedUtf8", "[\"\xC3(\"]", 1, 4, "not valid UTF-8"},
        Refusal{"surrogateInUtf8", "[\"\xED\xA0\x80\"]", 1, 4, "not valid UTF-8"},
        Refusal{"nullByte", QByteArray("[1]\0[", 5), 1, 4, "null character"},
        Refusal{"hugeNumber", "[1e999]", 1, 2, "too large"},
        Refusal{"halfNumber", "[-]", 1, 3, "digit is missing"},
        Refusal{"leadingZero", "[01]", 1, 2, "comma or a closing bracket"},
        Refusal{"notANumber", "[NaN]", 1, 2, "no value"},
        Refusal{"singleQuotes", "{'a':1}", 1, 2, "no value"},
        Refusal{"comment", "[1 // one\n]", 1, 4, "no value"},
        Refusal{"bareKey", "{true:1}", 1, 2, "key in double quotation marks"},
        Refusal{"noColon", "{\"a\" 1}", 1, 6, "colon is missing"},
        Refusal{"noCommaInObject", "{\"a\":1\n\"b\":2}", 2, 1, "comma or a closing brace"},
        Refusal{"commaAtEndOfObject", "{\"a\":1,}", 1, 8, "No comma may stand"},
        Refusal{"commaAtEndOfArray", "[\"\xC3\xA4\",]", 1, 6, "value is missing"},
        Refusal{"noValue", "{\"a\":}", 1, 6, "value is missing"},
        Refusal{"rubbishBehind", "{} {}", 1, 4, "Nothing may follow"},
        Refusal{"wordsOfTheParserInText", "[\"missing closing quote\" 1]", 1, 26,
                "comma or a closing bracket"},
        Refusal{"sameKeyTwice", "{\"a\":1,\n\"\\u0061\":2}", 2, 1, "\"a\" stands here twice"},
        Refusal{"onlyAMark", "\xEF\xBB", 1, 2, "not valid UTF-8"}),
    [](const auto& given) { return given.param.name; });

TEST(JsonReader, BoundsDepthAndSize) {
    const auto nested = [](int depth) { return QByteArray(depth, '[') + QByteArray(depth, ']'); };
    EXPECT_TRUE(readJson(nested(maximumDepth)).value.isValid());
    const auto tooDeep = readJson(nested(maximumDepth + 1));
    EXPECT_FALSE(tooDeep.value.isValid());
    EXPECT_EQ(tooDeep.error.column, maximumDepth + 1);
    EXPECT_TRUE(tooDeep.error.text.contains("too deeply"_L1));

    QByteArray large = "[" + QByteArray(maximumTextBytes - 2, ' ') + "]";
    EXPECT_TRUE(readJson(large).value.isValid());
    large += ' ';
    EXPECT_TRUE(readJson(large).error.text.contains("64 MiB"_L1));
}

}  // namespace
}  // namespace structured
