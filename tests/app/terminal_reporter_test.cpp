#include "app/terminal/reporter.h"

#include <gtest/gtest.h>

#include "app/terminal_memory_output.h"

namespace {

using namespace Qt::Literals::StringLiterals;
using app::terminal::Event;
using app::terminal::Glyphs;
using app::terminal::LiveReporter;
using app::terminal::OutputMode;
using app::terminal::PlainReporter;
using app::terminal::ProgressSnapshot;
using tests::MemoryOutput;

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

TEST(TerminalReporter, DrawsAnewWhenTheSizeChanges) {
    MemoryOutput output;
    LiveReporter reporter(output, {true, false, Glyphs::Unicode});
    reporter.show(oneRow);
    output.written.clear();
    reporter.show(oneRow);
    EXPECT_TRUE(output.written.isEmpty());
    output.window = {20, 5};
    reporter.show(oneRow);
    EXPECT_EQ(output.screen(), "a.iso           Con…\n1 download");
}

}  // namespace
