#include "structured/json/json_writer.h"

#include <gtest/gtest.h>

#include <QDateTime>

#include <limits>

#include "structured/json/bounds.h"
#include "structured/json/json_reader.h"

using namespace Qt::Literals::StringLiterals;

namespace structured {
namespace {

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

TEST(JsonWriter, LeavesAnArrayItsBrackets) {
    EXPECT_EQ(writeJson(QVariantList{true}, {JsonLayout::Unwrapped}), u"[\n\ttrue\n]"_s);
}

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
