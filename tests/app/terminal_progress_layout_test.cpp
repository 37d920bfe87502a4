#include "app/terminal/progress_layout.h"

#include <gtest/gtest.h>

namespace {

using namespace Qt::Literals::StringLiterals;
using app::terminal::Glyphs;
using app::terminal::Line;
using app::terminal::ProgressRow;
using app::terminal::ProgressSnapshot;
using app::terminal::Size;

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
