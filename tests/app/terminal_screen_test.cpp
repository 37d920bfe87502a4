#include "app/terminal/screen.h"

#include <gtest/gtest.h>

#include <random>

#include "app/terminal_emulator.h"

namespace {

using namespace Qt::Literals::StringLiterals;
using app::terminal::Ink;
using app::terminal::Line;
using app::terminal::Screen;
using tests::TerminalEmulator;

Line textLine(const QString& text) {
    return {{{0, text}}};
}

std::vector<Line> textLines(const QStringList& texts) {
    std::vector<Line> lines;
    for (const QString& text : texts)
        lines.push_back(textLine(text));
    return lines;
}

TEST(TerminalScreen, SaysNothingWhenNothingChanges) {
    Screen screen(true);
    EXPECT_TRUE(screen.show({}).isEmpty());
    EXPECT_FALSE(screen.show(textLines({u"a"_s, u"b"_s})).isEmpty());
    EXPECT_TRUE(screen.show(textLines({u"a"_s, u"b"_s})).isEmpty());
}

TEST(TerminalScreen, WritesOnlyTheLineThatChanged) {
    Screen screen(false);
    static_cast<void>(screen.show(textLines({u"first"_s, u"second"_s, u"third"_s})));
    const QByteArray bytes = screen.show(textLines({u"first"_s, u"changed"_s, u"third"_s}));
    EXPECT_TRUE(bytes.contains("changed"));
    EXPECT_FALSE(bytes.contains("first"));
    EXPECT_FALSE(bytes.contains("third"));
}

TEST(TerminalScreen, EndsAsAskedAfterAnyChanges) {
    std::mt19937 random(7);
    const auto below = [&random](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    TerminalEmulator terminal(20, 8);
    Screen screen(true);
    QStringList permanent, block;
    for (int step = 0; step < 2000; ++step) {
        if (below(4) == 0) {
            permanent.append(u"event %1"_s.arg(step));
            terminal.feed(screen.printAbove(textLines({permanent.last()})));
        } else if (below(20) == 0) {
            screen.invalidate();
        } else {
            block.resize(below(8));
            for (QString& line : block)
                line = u"row %1"_s.arg(below(3));
            terminal.feed(screen.show(textLines(block)));
        }
        ASSERT_EQ(terminal.everything(), permanent + block) << "step " << step;
        ASSERT_EQ(terminal.cursorColumn(), 0);
        ASSERT_TRUE(terminal.complaints().isEmpty()) << terminal.complaints().first().toStdString();
    }
    terminal.feed(screen.clear());
    EXPECT_EQ(terminal.everything(), permanent);
}

TEST(TerminalScreen, KeepsALineThatIsTooWideOnItsLine) {
    TerminalEmulator terminal(10, 5);
    Screen screen(false);
    terminal.feed(screen.show(textLines({u"0123456789abcdef"_s, u"status"_s})));
    EXPECT_EQ(terminal.everything().last(), u"status"_s);
    EXPECT_EQ(terminal.everything().size(), 2);
    EXPECT_EQ(terminal.cursorLine(), 0);
}

TEST(TerminalScreen, PutsColumnsWhereTheyBelong) {
    TerminalEmulator terminal(20, 5);
    Screen screen(true);
    terminal.feed(screen.show({{{{0, u"name"_s, Ink::Normal}, {10, u"50%"_s, Ink::Done}}}}));
    EXPECT_EQ(terminal.screen(), QStringList{u"name      50%"_s});
}

TEST(TerminalScreen, UsesNoColoursUnlessAllowed) {
    const std::vector<Line> lines{{{{0, u"bad"_s, Ink::Failed}}}};
    EXPECT_TRUE(Screen(true).show(lines).contains("\x1b[31m"));
    EXPECT_FALSE(Screen(false).show(lines).contains("m"));
}

TEST(TerminalScreen, LetsPermanentLinesWrapAboveTheBlock) {
    TerminalEmulator terminal(10, 6);
    Screen screen(false);
    terminal.feed(screen.show(textLines({u"row"_s, u"status"_s})));
    terminal.feed(screen.printAbove(textLines({u"0123456789abc"_s})));
    EXPECT_EQ(terminal.everything(),
              (QStringList{u"0123456789"_s, u"abc"_s, u"row"_s, u"status"_s}));
    terminal.feed(screen.show(textLines({u"row"_s})));
    EXPECT_EQ(terminal.everything(), (QStringList{u"0123456789"_s, u"abc"_s, u"row"_s}));
}

}  // namespace
