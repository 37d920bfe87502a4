#include "structured/text_view/json_text_view.h"

#include <gmock/gmock.h>

#include <QTemporaryDir>

#include "platform/base/user_defaults.h"
#include "structured/settings.h"
#include "structured/shorthand/lson_serialization.h"
#include "structured/text_view/json_text_view_validator.h"
#include "structured/text_view/syntax_highlighting.h"
#include "structured/text_view/text_component.h"

using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

namespace structured {
namespace {

/// A text without a widget, that keeps the steps which could be undone.
class MemoryText : public TextComponent {
public:
    QString content, selection;
    std::vector<QString> undoable;
    bool isReadOnly = false;
    int beeps = 0;
    QString alert;
    SyntaxHighlighting highlighting;
    TextStyle style;

    QString text() const override { return content; }
    QString selectedText() const override { return selection; }
    void setText(const QString& text) override {
        content = text;
        undoable.clear();
    }
    bool replaceText(const QString& text) override {
        if (isReadOnly)
            return false;
        undoable.push_back(std::exchange(content, text));
        return true;
    }
    bool replaceSelection(const QString& text) override { return replaceText(content + text); }
    void showHighlighting(const SyntaxHighlighting& shown) override { highlighting = shown; }
    double tabWidth(double fontSize) const override { return fontSize * 4.5; }
    void showStyle(const TextStyle& shown) override { style = shown; }
    void presentAlert(const QString& message) override { alert = message; }
    void beep() override { ++beeps; }
};

class OnlyArrays : public DQJSONTextViewValidator {
public:
    int highlightings = 0;
    int changes = 0;

    QVariant validateObjectValue(const QVariant& object, DQJSONTextView*) override {
        return object.typeId() == QMetaType::QVariantList ? object : QVariant();
    }
    void didApplySyntaxHighlightingToTextStorage(const QString&, SyntaxHighlighting& highlighting,
                                                 DQJSONTextView&) override {
        ++highlightings;
        highlighting.spans.push_back({{0, 1}, SyntaxRole::Disabled});
    }
    void didChangeObjectValueForTextView(DQJSONTextView&) override { ++changes; }
};

class JSONTextView : public testing::Test {
protected:
    std::vector<std::string> titles() {
        std::vector<std::string> result;
        for (const FormatMenuItem& item : view.formatMenuItems()) {
            const char* state = item.state == FormatMenuItem::State::On      ? " on"
                                : item.state == FormatMenuItem::State::Mixed ? " mixed"
                                                                             : "";
            EXPECT_EQ(item.text.has_value(),
                      !item.isSeparator && item.state != FormatMenuItem::State::On);
            result.push_back(item.isSeparator ? "-" : item.title.toStdString() + state);
        }
        return result;
    }

    QTemporaryDir folder;
    platform::UserDefaults defaults{folder.path(), u"test"_s};
    MemoryText text;
    DQJSONTextView view{text, defaults};
    OnlyArrays validator;
};

TEST_F(JSONTextView, ColoursWhatItCanReadAndTheValidatorAccepts) {
    view.setValidator(&validator);
    view.setString(u"[1]"_s);
    EXPECT_EQ(text.highlighting.background, SyntaxRole::OtherCode);
    EXPECT_EQ(text.highlighting.spans,
              (std::vector<SyntaxSpan>{{{1, 1}, SyntaxRole::Tag}, {{0, 1}, SyntaxRole::Disabled}}));

    view.setString(u"{\"a\":1}"_s);
    EXPECT_EQ(text.highlighting.background, SyntaxRole::OtherCode);
    EXPECT_TRUE(text.highlighting.spans.empty());
    EXPECT_TRUE(view.objectValue().isValid());
    EXPECT_FALSE(view.validatedObjectValue().isValid());
    EXPECT_FALSE(view.presentSyntaxError());

    view.setString(u"[\n1,"_s);
    EXPECT_EQ(text.highlighting.background, SyntaxRole::InvalidCode);
    EXPECT_EQ(validator.highlightings, 1);
    EXPECT_EQ(view.detectedFormat(), DQDetectedFormat::JSON);
    EXPECT_TRUE(view.presentSyntaxError());
    EXPECT_TRUE(text.alert.startsWith("Line 2, column 3: "_L1)) << text.alert.toStdString();

    defaults.set(settings::highlightsDespiteError, true);
    view.applySyntaxHighlighting();
    EXPECT_EQ(text.highlighting.background, SyntaxRole::OtherCode);
    EXPECT_EQ(validator.highlightings, 2);
    EXPECT_EQ(validator.changes, 0);
}

TEST_F(JSONTextView, WritesValuesAsTheUserPrefers) {
    const QVariantMap value{{u"a"_s, u"/"_s}};
    const auto written = [&](bool json, bool isShort, const QVariant& object) {
        defaults.set(settings::prefersJSON, json);
        defaults.set(settings::prefersShorthand, isShort);
        EXPECT_TRUE(view.setStringBySerializingPropertyList(object, false));
        return text.content;
    };
    EXPECT_EQ(written(true, true, value), u"\"a\" : \"/\"\n"_s);
    EXPECT_EQ(written(false, true, value), u"<key>a</key>\n<string>/</string>\n"_s);
    EXPECT_TRUE(written(false, false, value).startsWith("<?xml"_L1));
    EXPECT_EQ(written(true, true, QVariantList{QByteArray("x")}),
              u"<array>\n\t<data>\n\teA==\n\t</data>\n</array>\n"_s);
    defaults.set(settings::escapesJSONSlashes, true);
    EXPECT_EQ(written(true, false, value), u"{\n\t\"a\" : \"\\/\"\n}"_s);
    EXPECT_FALSE(view.setStringBySerializingPropertyList(QVariant(), false));
}

TEST_F(JSONTextView, OffersTheOtherSpellings) {
    view.setValidator(&validator);
    view.setString(u"{\n\t\"a\" : 1\n}"_s);
    EXPECT_THAT(titles(), ElementsAre("XML", "XML Shorthand", "-", "JSON on", "JSON Shorthand"));
    view.setString(u"{\"a\":1}"_s);
    EXPECT_THAT(titles(), ElementsAre("XML", "XML Shorthand", "-", "JSON mixed", "JSON Shorthand"));

    view.changeTextViaMenuItem(view.formatMenuItems()[3]);
    EXPECT_EQ(text.content, u"{\n\t\"a\" : 1\n}"_s);
    EXPECT_EQ(text.undoable.size(), 1U);
    EXPECT_EQ(validator.changes, 1);
    view.changeTextViaMenuItem(view.formatMenuItems()[3]);
    EXPECT_EQ(text.beeps, 0);
    view.changeTextViaMenuItem({});
    text.isReadOnly = true;
    view.changeTextViaMenuItem(view.formatMenuItems()[0]);
    EXPECT_EQ(text.beeps, 2);

    view.setString(u"<key>d</key><data>eA==</data>"_s);
    EXPECT_THAT(titles(), ElementsAre("XML", "XML Shorthand mixed"));
    view.setString(u"[null]"_s);
    EXPECT_THAT(titles(), ElementsAre("JSON mixed"));
    view.setString(u"["_s);
    EXPECT_THAT(titles(), ElementsAre());
}

TEST_F(JSONTextView, SetsItsTextInASizeThatCanBeRead) {
    EXPECT_EQ(view.fontSize(), 12);
    for (const auto& [set, used] :
         {std::pair{5.0, 8.0}, {100.0, 50.0}, {0.0, 12.0}, {std::nan(""), 12.0}, {13.0, 13.0}}) {
        view.setFontSize(set);
        EXPECT_EQ(view.fontSize(), used);
    }
    view.setString(u"[1]"_s);
    EXPECT_EQ(text.style, (TextStyle{13, 1, 29, 3}));
}

TEST_F(JSONTextView, ConvertsPropertyListsThatArePasted) {
    const QByteArray list = platform::writePropertyList(QVariantMap{{u"a"_s, u"/"_s}});
    struct Case {
        const char* name;
        QString content, type, pasteboardText;
        std::optional<QString> key;
        /// Null: not taken.
        QString inserted;
    };
    const QString plist = propertyListPasteboardType;
    const std::vector<Case> cases{
        {"no format", u""_s, plist, u"[1]"_s, {}, {}},
        {"same family", u"[1]"_s, plist, u"\"b\" : 1"_s, {}, {}},
        {"no structured text", u"[1]"_s, plist, u"b"_s, {}, {}},
        {"other family",
         u"<key>x</key><true/>"_s,
         plist,
         u"{\"b\":1}"_s,
         {},
         u"<key>a</key>\n<string>/</string>"_s},
        {"no text", u"[1]"_s, plist, u""_s, {}, u"\"a\" : \"/\""_s},
        {"key", u"\"x\" : 1"_s, keyPasteboardType, QString::fromUtf8(list), u"k"_s,
         u"\"k\" : {\n\t\"a\" : \"/\"\n}"_s},
        {"no key", u"[1]"_s, keyPasteboardType, QString::fromUtf8(list), {}, {}},
        {"foreign type", u"[1]"_s, u"text/plain"_s, u""_s, {}, {}},
    };
    for (const Case& each : cases) {
        MemoryText pasted;
        DQJSONTextView editor(pasted, defaults);
        editor.setString(each.content);
        const bool isTaken =
            editor.readSelectionFromPasteboard({each.pasteboardText, list, each.key}, each.type);
        EXPECT_EQ(isTaken, !each.inserted.isNull()) << each.name;
        EXPECT_EQ(pasted.content, each.content + each.inserted) << each.name;
    }
    view.setString(u"[1]"_s);
    text.isReadOnly = true;
    EXPECT_FALSE(view.readSelectionFromPasteboard({{}, list, {}}, plist));
    EXPECT_FALSE(view.readSelectionFromPasteboard({{}, "no list", {}}, plist));
}

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
