#include "app/terminal/screen.h"

#include <gtest/gtest.h>

#include <random>

#include "app/terminal/reporter.h"
#include "app/terminal_emulator.h"

namespace {

using namespace Qt::Literals::StringLiterals;
using app::terminal::Event;
using app::terminal::Glyphs;
using app::terminal::Ink;
using app::terminal::Line;
using app::terminal::LiveReporter;
using app::terminal::OutputMode;
using app::terminal::PlainReporter;
using app::terminal::ProgressSnapshot;
using app::terminal::Screen;
using tests::MemoryOutput;
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

TEST(TerminalScreen, WritesOnlyTheLineThatChanged) {
    Screen screen(false);
    static_cast<void>(screen.show(textLines({u"first"_s, u"second"_s, u"third"_s})));
    const QByteArray bytes = screen.show(textLines({u"first"_s, u"changed"_s, u"third"_s}));
    EXPECT_TRUE(bytes.contains("changed"));
    EXPECT_FALSE(bytes.contains("first"));
    EXPECT_FALSE(bytes.contains("third"));
    EXPECT_TRUE(screen.show(textLines({u"first"_s, u"changed"_s, u"third"_s})).isEmpty());
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
        ASSERT_TRUE(terminal.showsCursor());
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

const ProgressSnapshot oneRow{{{u"a.iso"_s, {}, {}, {}, {}, u"Connecting..."_s}}, u"1 download"_s};

TEST(TerminalReporter, ChoosesTheModeFromTheSurroundings) {
    struct Case {
        bool isTerminal;
        QStringList variables;
        bool live, colour;
        Glyphs glyphs;
    };
    const Case cases[] = {
        {true, {u"TERM=xterm"_s, u"LANG=de_DE.UTF-8"_s}, true, true, Glyphs::Unicode},
        {true, {u"TERM=xterm"_s, u"LANG=C.utf8"_s, u"LC_ALL=C"_s}, true, true, Glyphs::Ascii},
        {true,
         {u"TERM=xterm"_s, u"LC_ALL="_s, u"LC_CTYPE=de_DE@euro"_s},
         true,
         true,
         Glyphs::Ascii},
        {true, {u"TERM=xterm"_s, u"NO_COLOR=1"_s}, true, false, Glyphs::Ascii},
        {true, {u"TERM=xterm"_s, u"NO_COLOR="_s}, true, true, Glyphs::Ascii},
        {true, {u"TERM=dumb"_s, u"LANG=C.UTF-8"_s}, false, false, Glyphs::Unicode},
        {true, {}, false, false, Glyphs::Ascii},
        {false, {u"TERM=xterm"_s, u"LANG=C"_s}, false, false, Glyphs::Unicode},
    };
    for (const Case& c : cases) {
        QProcessEnvironment environment;
        for (const QString& variable : c.variables)
            environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
        const OutputMode mode = app::terminal::outputMode(c.isTerminal, environment);
        const std::string name = c.variables.join(u' ').toStdString();
        EXPECT_EQ(mode.isLive, c.live) << name;
        EXPECT_EQ(mode.inColour, c.colour) << name;
        EXPECT_EQ(mode.glyphs, c.glyphs) << name;
    }
}

TEST(TerminalReporter, WritesPlainLinesAndTroubleApart) {
    MemoryOutput output, errors;
    PlainReporter reporter(output, errors, Glyphs::Unicode);
    reporter.tell({Event::Kind::Started, u"a.iso"_s, {}});
    reporter.show(oneRow);
    reporter.tell({Event::Kind::Completed, u"a\n\x1b[31m.iso"_s, u"3 MB"_s});
    reporter.tell({Event::Kind::Failed, u"b.iso"_s, u"no space left"_s});
    reporter.tell({Event::Kind::Notice, u"Paused"_s, {}});
    EXPECT_EQ(output.written,
              "Started: a.iso\nDownload Complete: a\uFFFD\uFFFD[31m.iso - 3 MB\n"
              "Paused\n");
    EXPECT_EQ(errors.written, "Download Failed: b.iso - no space left\n");
}

TEST(TerminalReporter, KeepsEventsAboveTheMovingLines) {
    MemoryOutput output;
    LiveReporter reporter(output, {true, true, Glyphs::Unicode});
    reporter.show(oneRow);
    reporter.tell({Event::Kind::Completed, u"b.iso"_s, {}});
    const std::string event = "Download Complete: b.iso";
    const std::string block = "a.iso                    Connecting...\n1 download";
    EXPECT_EQ(output.screen(), event + "\n" + block);
    reporter.release();
    EXPECT_EQ(output.screen(), event);
    reporter.show(oneRow);
    EXPECT_EQ(output.screen(), event + "\n" + block);
}

TEST(TerminalReporter, WaitsForATerminalThatTakesNothing) {
    MemoryOutput output;
    LiveReporter reporter(output, {true, false, Glyphs::Unicode});
    output.ready = false;
    reporter.show(oneRow);
    reporter.tell({Event::Kind::Completed, u"b.iso"_s, {}});
    EXPECT_TRUE(output.written.isEmpty());
    output.ready = true;
    reporter.show(oneRow);
    EXPECT_EQ(output.screen(),
              "Download Complete: b.iso\na.iso                    Connecting...\n1 download");
}

TEST(TerminalReporter, LeavesTheTerminalToAnotherJob) {
    MemoryOutput output;
    LiveReporter reporter(output, {true, false, Glyphs::Unicode});
    output.foreground = false;
    reporter.show(oneRow);
    EXPECT_TRUE(output.written.isEmpty());
    reporter.tell({Event::Kind::Failed, u"b.iso"_s, u"404"_s});
    EXPECT_EQ(output.screen(), "Download Failed: b.iso - 404");
}

}  // namespace
