#include "app/terminal/terminal_questions.h"

#include <gtest/gtest.h>

#include "app/terminal_memory_output.h"

namespace {

using namespace Qt::Literals::StringLiterals;
using app::Alert;
using app::terminal::Glyphs;
using app::terminal::LiveReporter;

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
