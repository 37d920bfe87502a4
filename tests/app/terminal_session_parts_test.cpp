#include <gtest/gtest.h>

#include "app/terminal/refresh.h"
#include "app/terminal/run_ledger.h"
#include "support/main_loop.h"

namespace {

using app::terminal::Event;
using app::terminal::Refresh;
using app::terminal::RunLedger;

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

}  // namespace
