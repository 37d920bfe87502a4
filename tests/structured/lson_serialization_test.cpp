#include "structured/shorthand/lson_serialization.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace structured {
namespace {

using Serialization = DQLSONSerialization;
using Format = DQDetectedFormat;

QVariantList integers(std::initializer_list<qint64> values) {
    QVariantList list;
    for (const qint64 value : values)
        list.append(value);
    return list;
}

const QVariantMap simple{{u"a"_s, qint64{1}}, {u"b"_s, integers({1, 2})}};

struct Reading {
    const char* name;
    QString text;
    Format format;
    QVariant object;
};

class Spellings : public testing::TestWithParam<Reading> {};

TEST_P(Spellings, AreDetectedAndRead) {
    const ParsedText parsed = Serialization::objectWithString(GetParam().text);
    EXPECT_EQ(parsed.format, GetParam().format);
    EXPECT_EQ(parsed.object, GetParam().object);
    EXPECT_EQ(parsed.error.has_value(), GetParam().format == Format::None);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Spellings,
    testing::Values(
        Reading{"json", u"[1,2,3]"_s, Format::JSON, integers({1, 2, 3})},
        Reading{"member", u" \n\"a\" : 1"_s, Format::JSONShorthand,
                QVariantMap{{u"a"_s, qint64{1}}}},
        Reading{"members", u"\"a\" : 1\n\"b\" : [\n\t1,\n\t2\n]\n\n \n"_s, Format::JSONShorthand,
                simple},
        Reading{"bracesWithoutCommas", u"{\r\n\"a\" : 1\r\n\"b\" : [1,2]\r\n}"_s,
                Format::JSONShorthand, simple},
        Reading{"someCommas", u"{\n\"a\" : 1\n\"b\" : [1,2],\n\"c\" : 3\n}"_s,
                Format::JSONShorthand,
                QVariantMap{{u"a"_s, qint64{1}}, {u"b"_s, integers({1, 2})}, {u"c"_s, qint64{3}}}},
        Reading{"nested", u"\"a\" : {\n\t\"b\" : [\n\t\t10\n\t\t20\n\t]\n\t\"c\" : true\n}"_s,
                Format::JSONShorthand,
                QVariantMap{{u"a"_s, QVariantMap{{u"b"_s, integers({10, 20})}, {u"c"_s, true}}}}},
        Reading{"numbersOnLines", u"[\n10\n20\n30\n]"_s, Format::JSONShorthand,
                integers({10, 20, 30})},
        Reading{"manyBlankLines", u"[\n10\n20"_s + QString(300'000, u'\n') + u"\t]"_s,
                Format::JSONShorthand, integers({10, 20})},
        Reading{"digitsOnLines", u"[\n1\n2\n3\n]"_s, Format::None, {}},
        Reading{"digitsAsWritten", u"[\n1\n2,\n3\n]"_s, Format::JSONShorthand, integers({1, 2, 3})},
        Reading{"commaAtEnd", u"\"a\" : 1,\n\"b\" : 2,"_s, Format::None, {}},
        Reading{"loneString", u"\"a\""_s, Format::None, {}},
        Reading{"loneNumber", u"12"_s, Format::None, {}},
        Reading{"xmlMembers", u"<!-- x --> <key>a</key><string>b</string>"_s, Format::None, {}},
        Reading{"xmlShorthand", u"\n< KEY >a</KEY>"_s, Format::None, {}},
        Reading{"xmlKey", u"<key>a</key>\n<string> b\n\t$1\\</string>"_s, Format::XMLShorthand,
                QVariantMap{{u"a"_s, u" b\n\t$1\\"_s}}},
        Reading{"xml", u"<plist version=\"1.0\"><array><true/></array></plist>"_s, Format::XML,
                QVariantList{true}},
        Reading{"xmlFragment", u"<string>x</string>"_s, Format::None, {}},
        Reading{"halfACharacter", u"[\"\xD83D\"]"_s, Format::None, {}}),
    [](const auto& given) { return given.param.name; });

TEST(Serialization, ReportsTheErrorOfTheSpellingThatWasMeant) {
    struct Case {
        QString text;
        qint64 line, column;
        bool isXml;
    };
    const std::vector<Case> cases{
        {u"\"a\" : 1\n\"b\" : \"c"_s, 2, 9, false},
        {u"\"a\" 1"_s, 1, 5, false},
        {u"\"a\" : 1\n\"b\" 2\n\"c\" : 3"_s, 2, 5, false},
        {u"plain words"_s, 1, 1, false},
        {u"<key>a</key>\n<strin>b</strin>"_s, 2, 1, true},
        {u"<key>a</key><strin>b</strin>"_s, 1, 13, true},
        {u"<key>a</key>\n<dict>"_s, 2, 7, true},
        {u"<key>a</key>"_s, 1, 13, false},
    };
    for (const Case& each : cases) {
        const auto error = Serialization::objectWithString(each.text).error;
        ASSERT_TRUE(error) << each.text.toStdString();
        EXPECT_EQ(error->line, each.line) << each.text.toStdString();
        EXPECT_EQ(error->column, each.column) << error->text.toStdString();
        EXPECT_EQ(error->text.contains(u'<'), each.isXml) << error->text.toStdString();
    }
}

TEST(Serialization, RefusesAKeyThatStandsTwiceInEverySpelling) {
    struct Case {
        QString text;
        qint64 line, column;
    };
    const std::vector<Case> cases{
        {u"{\n\"a\" : 1,\n\"a\" : 2}"_s, 3, 1},
        {u"\"a\" : 1\n\"a\" : 2"_s, 2, 1},
        {u"<key>a</key><true/>\n<key>a</key><true/>"_s, 2, 1},
        {u"<plist version=\"1.0\"><dict>\n<key>a</key><true/>\n<key>a</key><true/>\n</dict></plist>"_s,
         3, 1},
    };
    for (const Case& each : cases) {
        const ParsedText parsed = Serialization::objectWithString(each.text);
        EXPECT_FALSE(parsed.object.isValid()) << each.text.toStdString();
        ASSERT_TRUE(parsed.error);
        EXPECT_EQ(parsed.error->text, u"The key \"a\" stands here twice."_s);
        EXPECT_EQ(parsed.error->line, each.line) << each.text.toStdString();
        EXPECT_EQ(parsed.error->column, each.column) << each.text.toStdString();
    }
}

TEST(Serialization, KeepsIntegersOf64BitsInEverySpelling) {
    const QVariantMap object{{u"largest"_s, std::numeric_limits<quint64>::max()},
                             {u"next"_s, quint64{1} << 63},
                             {u"signed"_s, std::numeric_limits<qint64>::max()},
                             {u"smallest"_s, std::numeric_limits<qint64>::min()}};
    for (const bool isShort : {false, true}) {
        for (const auto& text : {Serialization::JSONStringWithObject(object, isShort, isShort),
                                 Serialization::XMLStringWithObject(object, isShort)}) {
            ASSERT_TRUE(text);
            EXPECT_TRUE(text->contains(u"18446744073709551615"_s)) << text->toStdString();
            const QVariantMap read = Serialization::objectWithString(*text).object.toMap();
            for (auto member = object.begin(); member != object.end(); ++member) {
                EXPECT_EQ(read[member.key()], member.value()) << text->toStdString();
                EXPECT_EQ(read[member.key()].typeId(), member.value().typeId());
            }
        }
    }
}

TEST(Serialization, WritesEverySpelling) {
    EXPECT_EQ(Serialization::JSONStringWithObject(simple, false, false),
              u"{\n\t\"a\" : 1,\n\t\"b\" : [\n\t\t1,\n\t\t2\n\t]\n}"_s);
    EXPECT_EQ(Serialization::JSONStringWithObject(simple, true, true),
              u"\"a\" : 1\n\"b\" : [\n\t1\n\t2\n]\n"_s);
    EXPECT_EQ(Serialization::JSONStringWithObject(integers({1, 2, 3, 4}), true, true),
              u"[\n\t1\n\t2,\n\t3\n\t4\n]"_s);
    EXPECT_EQ(Serialization::XMLStringWithObject(
                  QVariantMap{{u"a"_s, u"x\n\ty\n\t"_s}, {u"b"_s, QByteArray("data")}}, true),
              u"<key>a</key>\n<string>x\n\ty\n\t</string>\n<key>b</key>\n<data>\nZGF0YQ==\n"
              u"</data>\n"_s);
    EXPECT_EQ(Serialization::XMLStringWithObject(QVariantMap(), true), u"<dict/>\n"_s);
    // The members of an element are not the members of the root.
    EXPECT_EQ(Serialization::XMLStringWithObject(QVariantList{QVariantMap{{u"a"_s, true}}}, true),
              u"<array>\n\t<dict>\n\t\t<key>a</key>\n\t\t<true/>\n\t</dict>\n</array>\n"_s);
    EXPECT_FALSE(Serialization::JSONStringWithObject({}, false, false));
    EXPECT_FALSE(Serialization::XMLStringWithObject({}, false));
    EXPECT_FALSE(
        Serialization::XMLStringWithObject(QVariantList{QVariant::fromValue(nullptr)}, false));
}

TEST(Serialization, ReadsBackWhatItWrites) {
    const QVariantMap object{
        {u"array of digits"_s, integers({1, 2, 3, 4, 5})},
        {u"nested"_s,
         QVariantList{QVariantList{QVariantList{integers({1, 2}), integers({3}), QVariantList()}},
                      QVariantMap{{u"x"_s, QVariantMap{{u"y"_s, true}, {u"z"_s, QVariantMap()}}}},
                      u"a,\n]}"_s, u"\u2028,"_s}},
        {u"texts"_s, QVariantList{u"[,"_s, u"\\"_s, u"{"_s, u""_s, u"</dict>\n\t<key>"_s}},
        {u"z,"_s, 1.5},
    };
    for (const bool unwrap : {false, true}) {
        for (const bool useLSON : {false, true}) {
            const auto text = Serialization::JSONStringWithObject(object, unwrap, useLSON);
            ASSERT_TRUE(text);
            const ParsedText parsed = Serialization::objectWithString(*text);
            EXPECT_EQ(parsed.object, QVariant(object)) << text->toStdString();
            EXPECT_EQ(parsed.format, unwrap || useLSON ? Format::JSONShorthand : Format::JSON);
        }
        const auto text = Serialization::XMLStringWithObject(object, unwrap);
        ASSERT_TRUE(text);
        const ParsedText parsed = Serialization::objectWithString(*text);
        EXPECT_EQ(parsed.object, QVariant(object)) << text->toStdString();
        EXPECT_EQ(parsed.format, unwrap ? Format::XMLShorthand : Format::XML);
    }
}

}  // namespace
}  // namespace structured
