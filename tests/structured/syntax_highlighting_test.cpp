#include "structured/text_view/syntax_highlighting.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace structured {
namespace {

char letterOf(SyntaxRole role) {
    switch (role) {
        case SyntaxRole::Tag:
            return '#';
        case SyntaxRole::Key:
            return 'k';
        case SyntaxRole::Value:
            return 'v';
        case SyntaxRole::TrueBoolean:
            return 't';
        case SyntaxRole::FalseBoolean:
            return 'f';
        default:
            return '.';
    }
}

/// A letter for each character of the text.
std::string painted(const QString& text, DQDetectedFormat format) {
    const SyntaxHighlighting highlighting = syntaxHighlighting(text, format);
    std::string result(static_cast<std::size_t>(text.size()), letterOf(highlighting.background));
    for (const SyntaxSpan& span : highlighting.spans) {
        result.replace(static_cast<std::size_t>(span.range.location),
                       static_cast<std::size_t>(span.range.length),
                       static_cast<std::size_t>(span.range.length), letterOf(span.role));
    }
    return result;
}

struct Painting {
    const char* name;
    DQDetectedFormat format;
    QString text;
    const char* letters;
};

class Paintings : public testing::TestWithParam<Painting> {};

TEST_P(Paintings, ShowTheRoleOfEachCharacter) {
    EXPECT_EQ(painted(GetParam().text, GetParam().format), GetParam().letters);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Paintings,
    testing::Values(
        Painting{"members", DQDetectedFormat::JSON, uR"({"a1" : "true", "b":-1.5})"_s,
                 ".kkkk...vvvvvv..kkk..###."},
        Painting{"booleans", DQDetectedFormat::JSONShorthand, uR"([true,False,null,"false"])"_s,
                 ".tttt.fffff......vvvvvvv."},
        Painting{"escapedQuote", DQDetectedFormat::JSON, uR"(["a\"1",2])"_s, ".vvvvvv.#."},
        Painting{"escapedBackslash", DQDetectedFormat::JSON, uR"(["a\\",2])"_s, ".vvvvv.#."},
        Painting{"unclosed", DQDetectedFormat::None, uR"(["a, 1)"_s, ".....#"},
        Painting{"xml", DQDetectedFormat::XML,
                 u"<key>n 1</key><string>\"q\"</string><true/><false />"_s,
                 ".###.kkk..###..######.vvv..######..tttt...fffff..."},
        Painting{"xmlNames", DQDetectedFormat::XMLShorthand,
                 u"<?xml a=\"1\"?><!-- --><key>true</key><real>1</real>"_s,
                 "..###...vvv....##.....###.kkkk..###..####.v..####."}),
    [](const auto& given) { return given.param.name; });

TEST(SyntaxHighlighting, HandsOutTheQuotedStringsOfJson) {
    const QString text = uR"("a" : ["b", 1])"_s;
    const auto strings =
        syntaxHighlighting(text, DQDetectedFormat::JSONShorthand).quotedJSONStrings;
    ASSERT_TRUE(strings && strings->size() == 2);
    EXPECT_TRUE((*strings)[0].key());
    EXPECT_EQ((*strings)[0].stringValue(), u"\"a\""_s);
    EXPECT_FALSE((*strings)[1].key());
    EXPECT_EQ((*strings)[1].range(), (TextRange{7, 3}));
    EXPECT_EQ((*strings)[1].baseStringValue(), text);
    EXPECT_FALSE(syntaxHighlighting(text, DQDetectedFormat::XML).quotedJSONStrings);
}

}  // namespace
}  // namespace structured
