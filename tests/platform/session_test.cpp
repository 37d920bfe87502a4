#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <csignal>

#include "platform/files/files.h"
#include "platform/session/bundled_gio.h"
#include "platform/session/login_item.h"
#include "platform/session/signal_watcher.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using platform::SignalWatcher;

TEST(LoginItemTest, IsAnAutostartEntryThatDesktopsCanSwitchOff) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"autostart/com.tarnworks.Orlop.desktop"_s);
    const platform::LoginItem item(path, uR"(/opt/a "b" $c 100%\d/orlop)"_s);
    EXPECT_FALSE(item.isEnabled());
    EXPECT_FALSE(item.setEnabled(true));
    EXPECT_TRUE(item.isEnabled());
    const QByteArray entry = platform::readFile(path, 1 << 16).data;
    EXPECT_TRUE(entry.contains(R"(Exec="/opt/a \\"b\\" \\$c 100%%\\\\d/orlop")")) << entry.data();

    for (const char* switchedOff : {"Hidden=true\n", "X-GNOME-Autostart-enabled = false\n"}) {
        QByteArray other = entry;
        other.replace("X-GNOME-Autostart-enabled=true\n", switchedOff);
        ASSERT_FALSE(platform::writeFileAtomically(path, other));
        EXPECT_FALSE(item.isEnabled()) << switchedOff;
    }
    EXPECT_FALSE(item.setEnabled(false));
    EXPECT_FALSE(platform::pathExists(path));
    EXPECT_FALSE(item.setEnabled(false)) << "it is gone already";
    EXPECT_TRUE(platform::LoginItem(u"/proc/no/such.desktop"_s, u"/orlop"_s).setEnabled(true));
}

class BundledGioTest : public testing::Test {
protected:
    ~BundledGioTest() override {
        for (const char* variable : {helper, modules})
            qunsetenv(variable);
    }

    const char* const helper = "GIO_LAUNCH_DESKTOP";
    const char* const modules = "GIO_MODULE_DIR";
    const QTemporaryDir folder;
};

TEST_F(BundledGioTest, IsNamedWhereItComesAlongAndNobodySaysOtherwise) {
    EXPECT_TRUE(platform::nameBundledGio(folder.path()).isEmpty());
    EXPECT_FALSE(qEnvironmentVariableIsSet(helper) || qEnvironmentVariableIsSet(modules));

    ASSERT_TRUE(QDir(folder.path()).mkpath(u"modules"_s));
    EXPECT_EQ(platform::nameBundledGio(folder.path()), QByteArrayList{modules});
    EXPECT_EQ(qEnvironmentVariable(modules), folder.filePath(u"modules"_s));
    EXPECT_FALSE(qEnvironmentVariableIsSet(helper));

    ASSERT_FALSE(platform::writeFileAtomically(folder.filePath(u"gio-launch-desktop"_s), "helper"));
    qputenv(modules, "/elsewhere");
    EXPECT_EQ(platform::nameBundledGio(folder.path()), QByteArrayList{helper});
    EXPECT_EQ(qEnvironmentVariable(helper), folder.filePath(u"gio-launch-desktop"_s));
    EXPECT_EQ(qgetenv(modules), "/elsewhere");
}

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
