#include "platform/session/signal_watcher.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <csignal>

namespace {

using platform::SignalWatcher;

/// Qt's event loop delivers the signals.
class SignalWatcherTest : public testing::Test {
protected:
    std::vector<int> told;
    SignalWatcher::Handler note = [this](int number) { told.push_back(number); };

private:
    int argc_ = 1;
    char name_[5] = "test";
    char* argv_[2] = {name_, nullptr};
    QCoreApplication application_{argc_, argv_};
};

TEST_F(SignalWatcherTest, TellsOfSignalsInTheEventLoopAndNotBefore) {
    const SignalWatcher watcher({{SIGUSR1}, {SIGUSR2}}, note);
    std::raise(SIGUSR1);
    std::raise(SIGUSR2);
    EXPECT_TRUE(told.empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(told, (std::vector<int>{SIGUSR1, SIGUSR2}));
}

TEST_F(SignalWatcherTest, GivesTheFormerDispositionBack) {
    { const SignalWatcher watcher({{SIGUSR1}}, note); }
    EXPECT_EQ(std::signal(SIGUSR1, SIG_DFL), SIG_DFL);
}

}  // namespace
