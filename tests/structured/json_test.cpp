#include "structured/json/json_reader.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <limits>

#include "structured/json/bounds.h"
#include "structured/json/json_writer.h"

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
    EXPECT_EQ(map[u"u"_s], QVariant(std::numeric_limits<quint64>::max()));
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

const QVariantMap sample{
    {u"b"_s, QVariantList{qint64{1}, QVariantMap{{u"x"_s, QVariantList()}}, QVariantMap()}},
    {u"a/"_s, u"/\"\\\t\x1f\u2028ä"_s},
};

struct Layout {
    const char* name;
    JsonStyle style;
    QString text;
};

class JsonLayouts : public testing::TestWithParam<Layout> {};

TEST_P(JsonLayouts, ByteForByte) {
    EXPECT_EQ(writeJson(sample, GetParam().style), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, JsonLayouts,
    testing::Values(
        Layout{"pretty",
               {},
               u"{\n\t\"a/\" : \"/\\\"\\\\\\t\\u001f\\u2028ä\",\n\t\"b\" : [\n\t\t1,\n\t\t{\n"
               u"\t\t\t\"x\" : []\n\t\t},\n\t\t{}\n\t]\n}"_s},
        Layout{"unwrapped",
               {JsonLayout::Unwrapped},
               u"\"a/\" : \"/\\\"\\\\\\t\\u001f\\u2028ä\",\n\"b\" : [\n\t1,\n\t{\n"
               u"\t\t\"x\" : []\n\t},\n\t{}\n]\n"_s},
        Layout{"compact",
               {JsonLayout::Compact, true},
               u"{\"a\\/\":\"\\/\\\"\\\\\\t\\u001f\\u2028ä\",\"b\":[1,{\"x\":[]},{}]}"_s}),
    [](const auto& given) { return given.param.name; });

TEST(JsonWriter, KeepsNumbersAndTheirKind) {
    const QVariantList numbers{qint64{-7},
                               2.0,
                               0.1,
                               1e300,
                               QVariant(std::numeric_limits<qint64>::max()),
                               5e-324,
                               -0.0,
                               1e15,
                               123456789012345680.0};
    const auto text = writeJson(numbers, {JsonLayout::Compact});
    ASSERT_TRUE(text);
    const QVariantList read = readJson(text->toUtf8()).value.toList();
    ASSERT_EQ(read.size(), numbers.size()) << text->toStdString();
    for (qsizetype i = 0; i < numbers.size(); ++i) {
        EXPECT_EQ(read[i].typeId(), numbers[i].typeId()) << text->toStdString();
        EXPECT_EQ(read[i], numbers[i]) << text->toStdString();
    }
}

TEST(JsonWriter, RefusesWhatJsonCannotHold) {
    QVariant deep = QVariantList();
    for (int level = 1; level < maximumDepth; ++level)
        deep = QVariantList{deep};
    for (const auto layout : {JsonLayout::Pretty, JsonLayout::Unwrapped, JsonLayout::Compact})
        EXPECT_TRUE(writeJson(deep, {layout}));
    const QVariantList refused{
        QVariant(),
        QVariant(1),
        QVariant(u"text"_s),
        QVariantList{QByteArray("data")},
        QVariantList{QDateTime::currentDateTimeUtc()},
        QVariantList{QVariant(std::numeric_limits<double>::infinity())},
        QVariantList{QString(QChar(0xD83D))},
        QVariantMap{{QString(QChar(0xDE00)), 1}},
        QVariantList{QVariantList{QVariant()}},
        QVariantList{deep},
    };
    for (const QVariant& value : refused)
        EXPECT_FALSE(writeJson(value)) << value.typeName();
}

}  // namespace
}  // namespace structured
