#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "app/terminal/opened_items.h"
#include "app/terminal/refresh.h"
#include "app/terminal/run_ledger.h"
#include "app/terminal/terminal_questions.h"
#include "app/terminal_emulator.h"
#include "support/main_loop.h"

namespace {

using namespace Qt::Literals::StringLiterals;
using app::Alert;
using app::terminal::Event;
using app::terminal::Glyphs;
using app::terminal::LiveReporter;
using app::terminal::openedItems;
using app::terminal::Refresh;
using app::terminal::RunLedger;

TEST(TerminalOpenedItems, TellsFilesFromAddressesFromNonsense) {
    const QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"part.orlop"_s));
    const QString path = folder.filePath(u"part.orlop"_s);
    const auto opened =
        openedItems({u"http://a.example/x"_s, QDir::current().relativeFilePath(path), u"nonsense"_s,
                     u"HTTPS://b.example/"_s, u"ftp://c/"_s, u"http://"_s, u"https:///x"_s, u""_s},
                    {}, false);
    EXPECT_EQ(opened.items, (QStringList{u"http://a.example/x"_s, path, u"HTTPS://b.example/"_s}));
    ASSERT_EQ(opened.refusals.size(), 5);
    EXPECT_EQ(opened.refusals[0], u"neither a file nor an address; no address: nonsense"_s);
    EXPECT_TRUE(opened.refusals[1].contains(u"no address of http, https"_s));
    EXPECT_TRUE(opened.refusals[2].contains(u"no valid address: http://"_s));
}

TEST(TerminalOpenedItems, TakesTextWithAnAddressInItAndAListInPlaceOfTheHyphen) {
    const QString mail = u"Hi,\nlook: https://a.example/x\n"_s;
    const auto opened = openedItems({mail, u"-"_s, u"www.d.example/x"_s}, u"no address"_s, false);
    EXPECT_EQ(opened.items, (QStringList{mail, u"no address"_s}));
    ASSERT_EQ(opened.refusals.size(), 1);
    EXPECT_TRUE(opened.refusals[0].contains(u"https://www.d.example/x"_s)) << "offered";
}

TEST(TerminalRunLedger, TellsOfEachChangeOnceAndCountsWhatFailedInTheEnd) {
    RunLedger ledger;
    const auto first = std::make_shared<int>(), second = std::make_shared<int>();
    using State = RunLedger::State;
    EXPECT_EQ(ledger.note(first, State::Waiting), std::nullopt);
    EXPECT_EQ(ledger.note(first, State::Running), Event::Kind::Started);
    EXPECT_EQ(ledger.note(first, State::Running), std::nullopt);
    EXPECT_EQ(ledger.note(first, State::Failed), Event::Kind::Failed);
    EXPECT_EQ(ledger.note(first, State::Failed), std::nullopt);
    EXPECT_EQ(ledger.note(second, State::Failed), Event::Kind::Failed);
    EXPECT_EQ(ledger.failures(), 2u);
    EXPECT_EQ(ledger.note(first, State::Waiting), std::nullopt);
    EXPECT_EQ(ledger.failures(), 1u);
    EXPECT_EQ(ledger.note(first, State::Running), Event::Kind::Started);
    EXPECT_EQ(ledger.note(first, State::Done), Event::Kind::Completed);
    EXPECT_EQ(ledger.failures(), 1u);
}

class TerminalRefreshTest : public testing::Test {
protected:
    support::MainLoop main;
    int drawings = 0;
    bool moves = false;
    Refresh refresh{main.loop, [this] {
                        ++drawings;
                        return moves;
                    }};
};

TEST_F(TerminalRefreshTest, DrawsAtMostTenTimesASecondHoweverOftenAsked) {
    for (int i = 0; i < 1000; ++i) {
        refresh.request();
        main.advance(0.001);
    }
    EXPECT_GE(drawings, 9);
    EXPECT_LE(drawings, 10);
}

TEST_F(TerminalRefreshTest, RestsWhenNothingIsAsked) {
    refresh.request();
    main.advance(60);
    EXPECT_EQ(drawings, 1);
    EXPECT_EQ(main.loop.nextDeadline(), std::nullopt);
}

TEST_F(TerminalRefreshTest, GoesOnSlowlyWhileFiguresMove) {
    moves = true;
    refresh.request();
    main.advance(10);
    EXPECT_GE(drawings, 9);
    EXPECT_LE(drawings, 11);
    refresh.cancel();
    main.advance(10);
    EXPECT_LE(drawings, 11);
}

/// Answers from a list; when that is empty, the terminal is gone.
class ScriptedPrompt final : public app::terminal::Prompt {
public:
    [[nodiscard]] bool exists() const override { return available; }
    [[nodiscard]] bool isAvailable() const override { return available; }
    std::optional<QString> ask(const QString& question, Echo) override {
        asked.append(question);
        if (answers.isEmpty())
            return {};
        return answers.takeFirst();
    }
    void cancel() override { cancelled = true; }

    bool available = true;
    bool cancelled = false;
    QStringList asked, answers;
};

class TerminalQuestionsTest : public testing::Test {
protected:
    tests::MemoryOutput output;
    LiveReporter reporter{output, {true, false, Glyphs::Unicode}};
    ScriptedPrompt prompt;
    int ended = 0;
    app::terminal::TerminalQuestions questions{prompt, reporter, [this] { ++ended; }};
    const Alert alert{Alert::Kind::ManyFiles, u"100 files and counting..."_s,
                      u"Are you sure you still want more?"_s, u"Continue"_s, u"Stop"_s};
};

TEST_F(TerminalQuestionsTest, UnderstandsAnyBeginningOfAnAnswer) {
    struct Case {
        QStringList answers;
        bool expected;
    };
    const Case cases[] = {{{u"c"_s}, true},
                          {{u"CONTINUE"_s}, true},
                          {{u""_s}, true},
                          {{u"sto"_s}, false},
                          {{u"yes"_s, u"what"_s, u"s"_s}, false},
                          {{}, false}};
    for (const Case& c : cases) {
        prompt.answers = c.answers;
        EXPECT_EQ(questions.confirm(alert), c.expected) << c.answers.join(u' ').toStdString();
        EXPECT_TRUE(prompt.answers.isEmpty());
    }
    EXPECT_TRUE(prompt.asked.first().contains(alert.title));
    EXPECT_TRUE(prompt.asked.first().contains(u"[Continue/Stop]"_s));
}

TEST_F(TerminalQuestionsTest, ClearsTheProgressAwayForTheTimeOfTheQuestion) {
    reporter.show({{{u"a.iso"_s, {}, {}, {}, {}, u"Connecting..."_s}}, {}});
    prompt.answers = {u"c"_s};
    EXPECT_TRUE(questions.confirm(alert));
    EXPECT_EQ(output.screen(), "");
    EXPECT_EQ(ended, 1);
    EXPECT_FALSE(questions.isAsking());
}

TEST_F(TerminalQuestionsTest, DoesTheLeastWhereNobodyAnswers) {
    prompt.available = false;
    EXPECT_FALSE(questions.confirm(alert));
    EXPECT_TRUE(prompt.asked.isEmpty());
}

TEST_F(TerminalQuestionsTest, NeverHoldsUpTheEnd) {
    EXPECT_TRUE(questions.confirm({Alert::Kind::QuitWhileDownloading, {}, {}, {}, {}}));
    EXPECT_TRUE(prompt.asked.isEmpty());
    questions.dismissAlert();
    EXPECT_TRUE(prompt.cancelled);
}

}  // namespace
