#include "structured/json/json_complaints.h"

#include <QCoreApplication>
#include <array>

namespace structured {

namespace {

struct Rule {
    std::string_view phrase;
    std::string_view secondPhrase;
    JsonComplaint complaint;
};

/// The first rule whose phrases both occur holds. Words within a token come first, since the
/// parser also says what it had expected in place of a broken token.
constexpr std::array rules = {
    Rule{"missing closing quote",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "A text has no closing quotation mark."), false}},
    Rule{"control character U+000A",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "A text has no closing quotation mark on its line."), false}},
    Rule{"control character U+000D",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "A text has no closing quotation mark on its line."), false}},
    Rule{"control character U+0009",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "A tab within a text must be written as \\t."), false}},
    Rule{"control character",
         "",
         {QT_TRANSLATE_NOOP("Orlop",
                            "A control character within a text must be written as an "
                            "escape such as \\u001F."),
          false}},
    Rule{"forbidden character after backslash",
         "",
         {QT_TRANSLATE_NOOP("Orlop",
                            "A backslash must be followed by one of \" \\ / b f n r t u. "
                            "To mean the backslash itself, double it."),
          false}},
    Rule{"must be followed by 4 hex digits",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "\\u must be followed by four hexadecimal digits."), false}},
    Rule{"surrogate",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "This escape is half a character; its other half is missing."),
          false}},
    Rule{"ill-formed UTF-8", "", {QT_TRANSLATE_NOOP("Orlop", "This is not valid UTF-8."), false}},
    Rule{"invalid BOM", "", {QT_TRANSLATE_NOOP("Orlop", "This is not valid UTF-8."), false}},
    Rule{"number overflow", "", {QT_TRANSLATE_NOOP("Orlop", "This number is too large."), true}},
    Rule{"invalid number",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "This number is incomplete: a digit is missing."), false}},
    Rule{"invalid literal",
         "",
         {QT_TRANSLATE_NOOP("Orlop",
                            "This is no value. A text must stand in double quotation "
                            "marks; the only bare words are true, false and null."),
          true}},
    Rule{"unexpected end of input",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "The text ends before everything is closed."), true}},
    Rule{"empty input",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "The text ends before everything is closed."), true}},
    Rule{"unexpected '}'",
         "; expected string literal",
         {QT_TRANSLATE_NOOP("Orlop", "No comma may stand before a closing brace."), true}},
    Rule{"unexpected ']'",
         "; expected '[', '{', or a literal",
         {QT_TRANSLATE_NOOP("Orlop", "A value is missing before this bracket."), true}},
    Rule{"; expected string literal",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "A key in double quotation marks is missing."), true}},
    Rule{"; expected ':'",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "A colon is missing behind the key."), true}},
    Rule{"; expected '}'",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "A comma or a closing brace is missing before this."), true}},
    Rule{
        "; expected ']'",
        "",
        {QT_TRANSLATE_NOOP("Orlop", "A comma or a closing bracket is missing before this."), true}},
    Rule{"; expected end of input",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "Nothing may follow the end of the whole."), true}},
    Rule{"; expected '[', '{', or a literal",
         "",
         {QT_TRANSLATE_NOOP("Orlop", "A value is missing before this."), true}},
};

}  // namespace

JsonComplaint jsonComplaint(std::string_view parserMessage) {
    // What follows quotes the text that was read, which may hold any words.
    const std::string_view message = parserMessage.substr(0, parserMessage.find("; last read: '"));
    for (const Rule& rule : rules) {
        if (message.find(rule.phrase) != std::string_view::npos &&
            message.find(rule.secondPhrase) != std::string_view::npos) {
            return rule.complaint;
        }
    }
    return {QT_TRANSLATE_NOOP("Orlop", "This is not valid JSON."), false};
}

}  // namespace structured
