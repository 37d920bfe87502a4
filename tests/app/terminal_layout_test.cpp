#include "app/terminal/progress_layout.h"

#include <gtest/gtest.h>

#include "app/terminal/cells.h"

namespace {

using namespace Qt::Literals::StringLiterals;
using app::terminal::Glyphs;
using app::terminal::Line;
using app::terminal::ProgressRow;
using app::terminal::ProgressSnapshot;
using app::terminal::Size;

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

ProgressRow half(const QString& name) {
    return {name, 0.5, u"1.5 of 3 MB"_s, u"1.2 MB/s"_s, u"0:01"_s, {}};
}

/// As it would be read, blanks between the columns included.
QString flat(const Line& line) {
    QString text;
    int column = 0;
    for (const auto& span : line.spans) {
        text += QString(std::max(span.column - column, 0), u' ') + span.text;
        column = std::max(span.column, column) + app::terminal::cellWidth(span.text);
    }
    return text;
}

std::vector<Line> lines(const ProgressSnapshot& snapshot, Size size,
                        Glyphs glyphs = Glyphs::Unicode) {
    return app::terminal::progressLines(snapshot, size, glyphs);
}

TEST(TerminalProgressLayout, AlignsNameBarAndFiguresAtTheUsualWidth) {
    const auto shown = lines({{half(u"movie.mkv"_s)}, u"1 download"_s}, {80, 24}, Glyphs::Ascii);
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(flat(shown[0]).toStdString(),
              "movie.mkv              ###---   50%           1.5 of 3 MB    1.2 MB/s       0:01");
    EXPECT_EQ(flat(shown[1]), u"1 download"_s);
}

TEST(TerminalProgressLayout, NeverPassesTheWidthNorOverlapsColumns) {
    ProgressSnapshot snapshot;
    snapshot.rows = {
        half(u"日本語のとても長いファイル名です.tar.gz"_s),
        {u"\x1b[2Jevil"_s, {}, u"999.9 KB of 999.9 MB"_s, u"999.9 MB/s"_s, u"12.5 days"_s, {}},
        {u"waiting"_s, {}, {}, {}, {}, u"Connecting... with a very long note"_s}};
    snapshot.status = u"3 of 12 downloads with more words than fit on narrow terminals"_s;
    for (int width = 1; width < 200; ++width) {
        for (const Line& line : lines(snapshot, {width, 24})) {
            int column = 0;
            for (const auto& span : line.spans) {
                EXPECT_GE(span.column, column) << width;
                column = span.column + app::terminal::cellWidth(span.text);
                EXPECT_FALSE(span.text.contains(u'\x1b'));
            }
            EXPECT_LE(column, width);
        }
    }
}

TEST(TerminalProgressLayout, DropsWhatTellsLeastAsWidthShrinks) {
    const ProgressSnapshot snapshot{{half(u"movie.mkv"_s)}, {}};
    const auto has = [&snapshot](int width, const QString& text) {
        return flat(lines(snapshot, {width, 24})[0]).contains(text);
    };
    EXPECT_TRUE(has(80, u"━"_s));
    EXPECT_FALSE(has(65, u"━"_s));
    EXPECT_TRUE(has(65, u"1.5 of 3 MB"_s));
    EXPECT_FALSE(has(50, u"1.5 of 3 MB"_s));
    EXPECT_TRUE(has(50, u"1.2 MB/s"_s));
    EXPECT_FALSE(has(32, u"1.2 MB/s"_s));
    EXPECT_TRUE(has(32, u"0:01"_s));
    EXPECT_TRUE(has(20, u"50%"_s));
    EXPECT_EQ(flat(lines(snapshot, {5, 24})[0]), u"mov…v"_s);
}

TEST(TerminalProgressLayout, CountsWhatDoesNotFitBelowOneAnother) {
    ProgressSnapshot snapshot;
    for (int i = 0; i < 30; ++i)
        snapshot.rows.push_back(half(QString::number(i)));
    snapshot.status = u"30 downloads"_s;

    const auto shown = lines(snapshot, {80, 10});
    ASSERT_EQ(shown.size(), 9u);
    EXPECT_TRUE(flat(shown[7]).startsWith(u"7 "_s));
    EXPECT_EQ(flat(shown[8]), u"30 downloads, 22 more not shown"_s);
    ASSERT_EQ(lines(snapshot, {80, 1}).size(), 1u);
    EXPECT_EQ(flat(lines(snapshot, {80, 1})[0]), u"30 downloads, 30 more not shown"_s);

    snapshot.rows.resize(8);
    EXPECT_EQ(flat(lines(snapshot, {80, 10}).back()), u"30 downloads"_s);
    snapshot.status.clear();
    snapshot.rows.resize(3);
    EXPECT_EQ(lines(snapshot, {80, 10}).size(), 3u);
    EXPECT_TRUE(lines({}, {80, 10}).empty());
}

TEST(TerminalProgressLayout, FillsTheBarByHalves) {
    struct Case {
        double fraction;
        QString filled, rest;
    };
    const Case cases[] = {{0.0, u""_s, u"────"_s}, {0.125, u"╸"_s, u"───"_s},
                          {0.5, u"━━"_s, u"──"_s}, {0.9, u"━━━╸"_s, u""_s},
                          {1.0, u"━━━━"_s, u""_s}, {7.0, u"━━━━"_s, u""_s},
                          {-1.0, u""_s, u"────"_s}};
    for (const Case& c : cases) {
        const auto bar = app::terminal::progressBar(c.fraction, 4, Glyphs::Unicode);
        EXPECT_EQ(bar.filled, c.filled) << c.fraction;
        EXPECT_EQ(bar.rest, c.rest) << c.fraction;
    }
}

TEST(TerminalProgressLayout, SaysHundredPerCentOnlyWhenComplete) {
    ProgressRow row = half(u"a"_s);
    row.fraction = 0.9999;
    EXPECT_TRUE(flat(lines({{row}, {}}, {80, 24})[0]).contains(u" 99%"_s));
    row.fraction = 1.0;
    EXPECT_TRUE(flat(lines({{row}, {}}, {80, 24})[0]).contains(u"100%"_s));
}

}  // namespace
