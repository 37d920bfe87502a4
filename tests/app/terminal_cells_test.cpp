#include "app/terminal/cells.h"

#include <gtest/gtest.h>

namespace {

using namespace Qt::Literals::StringLiterals;
using app::terminal::Glyphs;

TEST(TerminalCells, MeasuresWhatATerminalDraws) {
    struct Case {
        QString text;
        int cells;
    };
    const Case cases[] = {
        {u""_s, 0},        {u"plain.iso"_s, 9},
        {u"日本語"_s, 6},  {u"ｆｕｌｌ"_s, 8},
        {u"half ｱｲ"_s, 7}, {u"e\u0301te\u0301"_s, 3},
        {u"한글"_s, 4},    {u"\u1112\u1161\u11ab"_s, 2},
        {u"😀.zip"_s, 6},   {u"👨‍👩‍👧"_s, 2},
        {u"🇩🇪🇫🇷"_s, 4},    {u"❤"_s, 1},
        {u"❤️"_s, 2},  {u"a\u200Bb"_s, 2},
        {u"שלום"_s, 4},
    };
    for (const Case& c : cases)
        EXPECT_EQ(app::terminal::cellWidth(c.text), c.cells) << c.text.toStdString();
}

TEST(TerminalCells, LetsNothingThroughThatSteersATerminal) {
    struct Case {
        QString text, expected;
    };
    const QChar bad(QChar::ReplacementCharacter);
    const Case cases[] = {
        {u"safe name.txt"_s, u"safe name.txt"_s},
        {u"\x1b]0;owned\x07.txt"_s, bad + u"]0;owned"_s + bad + u".txt"_s},
        {u"a\nb\rc\td"_s, u"a"_s + bad + u"b"_s + bad + u"c"_s + bad + u"d"_s},
        {u"\u009b31mred\u007f"_s, bad + u"31mred"_s + bad},
        {u"invoice\u202Egpj.exe"_s, u"invoice"_s + bad + u"gpj.exe"_s},
        {u"a\u2028b\u2066c"_s, u"a"_s + bad + u"b"_s + bad + u"c"_s},
        {u"x"_s + QChar(0xD800) + u"y"_s, u"x"_s + bad + u"y"_s},
        {u"😀"_s, u"😀"_s},
    };
    for (const Case& c : cases)
        EXPECT_EQ(app::terminal::printable(c.text, Glyphs::Unicode), c.expected);
    EXPECT_EQ(app::terminal::printable(u"né😀.\x1b"_s, Glyphs::Ascii), u"n??.?"_s);
}

TEST(TerminalCells, CutsWithoutSplittingCharacters) {
    using app::terminal::clippedAtEnd;
    using app::terminal::clippedInMiddle;
    EXPECT_EQ(clippedInMiddle(u"short.iso"_s, 9, Glyphs::Unicode), u"short.iso"_s);
    EXPECT_EQ(clippedInMiddle(u"debian-12.5.0-amd64-netinst.iso"_s, 16, Glyphs::Unicode),
              u"debian-12.…t.iso"_s);
    EXPECT_EQ(clippedInMiddle(u"debian-12.5.0-amd64-netinst.iso"_s, 16, Glyphs::Ascii),
              u"debian-12....iso"_s);
    EXPECT_EQ(clippedAtEnd(u"Connecting"_s, 5, Glyphs::Unicode), u"Conn…"_s);
    EXPECT_EQ(clippedAtEnd(u"Connecting"_s, 2, Glyphs::Ascii), u".."_s);
    EXPECT_EQ(clippedAtEnd(u"Connecting"_s, 0, Glyphs::Unicode), u""_s);
    for (int cells = 0; cells < 14; ++cells) {
        const QString cut =
            clippedInMiddle(u"日本👨‍👩‍👧e\u0301x語.tar"_s, cells, Glyphs::Unicode);
        EXPECT_LE(app::terminal::cellWidth(cut), cells) << cut.toStdString();
        EXPECT_EQ(cut.contains(u'\u200D'), cut.contains(u"👨‍👩‍👧"_s))
            << cut.toStdString();
    }
}

}  // namespace
