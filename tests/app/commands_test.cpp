#include "app/commands/commands.h"

#include <gmock/gmock.h>

#include "app/commands/context_menu.h"
#include "app/commands/status_item_menu.h"
#include "app/settings.h"
#include "core_fixture.h"
#include "engine/settings.h"
#include "engine/workers/debug_log.h"
#include "support/log_recorder.h"

using namespace Qt::Literals::StringLiterals;
using app::Command;
using app::MenuItem;
using testing::ElementsAre;

namespace {

class CommandsTest : public Core {
protected:
    CommandsTest() {
        defaults.set(app::settings::autoStart, false);
        defaults.set(engine::settings::uselessAnimations, false);
    }

    /// Rows in a short form: "-" for a separator, "[x]" behind a mark, "(...)" around what is inert
    /// and ">" behind a submenu.
    static QStringList lines(const app::Menu& menu) {
        QStringList lines;
        for (const MenuItem& item : menu) {
            QString title = QString(item.title).remove(u'&');
            if (item.kind == MenuItem::Kind::Separator ||
                item.kind == MenuItem::Kind::PseudoSeparator)
                title = u"-"_s;
            else if (item.kind == MenuItem::Kind::Note || !item.state.isEnabled)
                title = u'(' + title + u')';
            else if (item.kind == MenuItem::Kind::Submenu)
                title += u" >"_s;
            if (item.state.isChecked.value_or(false))
                title += u" [x]"_s;
            lines.append(title);
        }
        return lines;
    }
    /// Up to where the part begins that is always there.
    QStringList leadingLines(const Downloads& downloads) {
        const QStringList all = lines(app::contextMenu(commands, downloads));
        return all.first(all.indexOf(u"Download to >"_s));
    }
    void perform(const app::Menu& menu, const QString& title) {
        for (const MenuItem& item : menu) {
            if (item.title == title)
                return item.perform();
        }
        ADD_FAILURE() << qPrintable(title) << " is not in the menu";
    }
    void setStatus(const QString& name, engine::DQDownloadStatus status) {
        engine::matchesStatusMask(status, engine::finishedStatuses)
            ? end(*download(name), status)
            : Core::setStatus(*download(name), status);
    }

    app::Commands commands{{*controller, defaults, frontEnd.frontEnd()}};
};

TEST_F(CommandsTest, EnablesAndMarksWhatTheQueueAndTheSettingsAllow) {
    enum Mark { None, Off, On };
    struct Case {
        const char* situation;
        std::function<void()> arrange;
        Command command;
        qint64 tag;
        bool isEnabled;
        Mark mark = None;
    };
    const auto nothing = [] {};
    const auto set = [this](const platform::Setting<bool>& setting, bool value) {
        return [this, &setting, value] { defaults.set(setting, value); };
    };
    const auto perform = [this](Command command, qint64 tag = 0) {
        return [this, command, tag] { commands.perform(command, tag); };
    };
    const auto selectPaused = [this] { controller->selectDownloads({download(u"b"_s)}); };
    const Case cases[] = {
        {"empty", nothing, Command::Copy, 0, false},
        {"empty", nothing, Command::CancelAll, 1, false},
        {"empty", nothing, Command::Clear, 0, false},
        {"empty", nothing, Command::Rearrange, -1, false},
        {"one paused", [this] { add({u"b"_s}); }, Command::QueuePaused, 0, true},
        {"one paused", nothing, Command::Rearrange, -1, false},
        {"two paused", [this] { add({u"a"_s}); }, Command::Rearrange, -1, true},
        {"two paused", nothing, Command::Rearrange, 1, true},
        {"rearranged by name", perform(Command::Rearrange, 1), Command::Rearrange, 1, false},
        {"all paused", nothing, Command::PauseAll, 0, false},
        {"all paused", nothing, Command::PauseQueued, 0, false},
        {"a waits", [this] { setStatus(u"a"_s, engine::DQDownloadStatusQueued); },
         Command::PauseQueued, 0, true},
        {"a runs", [this] { setStatus(u"a"_s, engine::DQDownloadStatusDownloading); },
         Command::PauseQueued, 0, false},
        {"a runs", nothing, Command::PauseAll, 0, true},
        {"a paused one is selected", selectPaused, Command::PauseAll, 0, false},
        {"a paused one is selected", nothing, Command::Remove, 0, true},
        {"the last row is selected", nothing, Command::Move, app::MoveDown, false},
        {"the last row is selected", nothing, Command::Move, app::MoveUp, true},
        {"sorted by name", perform(Command::ChangeSorting, 1), Command::Move, app::MoveUp, false},
        {"sorted by name", nothing, Command::ChangeSorting, 1, true, On},
        {"sorted by name", nothing, Command::ChangeSorting, 0, true, Off},
        {"not inverted", nothing, Command::ChangeSorting, -1, true, On},
        {"inverted", perform(Command::ChangeSorting, -2), Command::ChangeSorting, -2, true, On},
        {"one failed", [this] { setStatus(u"b"_s, engine::DQDownloadStatusAborted); },
         Command::Clear, 0, true},
        {"the selected one failed", nothing, Command::CancelAll, 1, false},
        {"the selected one failed", nothing, Command::Retry, 0, true},
        {"addresses shown", perform(Command::ToggleLocationKeyDisplayNames),
         Command::ToggleLocationKeyDisplayNames, 0, true, On},
        {"in private", perform(Command::TogglePrivateDownloading),
         Command::ToggleLocationKeyDisplayNames, 0, false, Off},
        {"automatic", set(app::settings::autoStart, true), Command::ToggleAutoStart, 0, true, On},
        {"sleep asked for", perform(Command::ToggleAutoSleep), Command::ToggleAutoSleep, 0, true,
         On},
        {"shutting down declined", perform(Command::ToggleAutoShutDown), Command::ToggleAutoSleep,
         0, true, On},
        {"shutting down agreed",
         [this] {
             frontEnd.onConfirm = [](const app::Alert&) { return true; };
             commands.perform(Command::ToggleAutoShutDown);
         },
         Command::ToggleAutoSleep, 0, true, Off},
        {"shutting down agreed", nothing, Command::ToggleAutoShutDown, 0, true, On},
        {"taken back without a question",
         [this] {
             frontEnd.onConfirm = [](const app::Alert&) { return false; };
             commands.perform(Command::ToggleAutoShutDown);
         },
         Command::ToggleAutoShutDown, 0, true, Off},
        {"style", nothing, Command::ChangeProgressBarStyle, 0, true, On},
        {"no window", nothing, Command::ShowPreferences, 0, false},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.situation);
        SCOPED_TRACE(app::commandDescription(one.command, one.tag).identifier);
        one.arrange();
        const app::CommandState state = commands.state(one.command, one.tag);
        EXPECT_EQ(state.isEnabled, one.isEnabled);
        EXPECT_EQ(state.isChecked.value_or(false), one.mark == On);
        EXPECT_EQ(state.isChecked.has_value(), one.mark != None);
    }
}

TEST_F(CommandsTest, OffersForOneDownloadWhatItsStatusAllows) {
    add({u"a"_s, u"b"_s});
    const auto only = [this] { return Downloads{download(u"a"_s)}; };
    const QString address = u'(' + Core::address(u"a"_s) + u')';
    const QStringList end{u"Open in Browser"_s, u"Copy URL"_s, address, u"Debug Logging"_s, u"-"_s};

    EXPECT_EQ(
        leadingLines(only()),
        QStringList({u"Start Download"_s, u"Remove"_s, u"-"_s, u"Accelerate"_s, u"-"_s}) + end);
    setStatus(u"b"_s, engine::DQDownloadStatusQueued);
    EXPECT_EQ(leadingLines(only()).value(1), u"Start Download Now"_s);
    setStatus(u"a"_s, engine::DQDownloadStatusQueued);
    EXPECT_THAT(leadingLines(only()).first(2),
                ElementsAre(u"Start Download Now"_s, u"Pause Download"_s));
    setStatus(u"a"_s, engine::DQDownloadStatusDownloading);
    EXPECT_EQ(leadingLines(only()), QStringList({u"Pause Download"_s, u"Remove"_s, u"-"_s}) + end);
    setStatus(u"a"_s, engine::DQDownloadStatusDone);
    EXPECT_EQ(leadingLines(only()), end) << "its file is gone";
    setStatus(u"a"_s, engine::DQDownloadStatusAborted);
    EXPECT_EQ(leadingLines(only()), QStringList({u"Retry"_s, u"-"_s}) + end);
    setStatus(u"b"_s, engine::DQDownloadStatusAborted);
    EXPECT_EQ(leadingLines(only()).value(1), u"Retry All"_s) << "another one failed too";
    perform(app::contextMenu(commands, only()), u"Retry All"_s);
    EXPECT_EQ(controller->numberOfFailedDownloads(), 0);
    EXPECT_EQ(leadingLines({}), QStringList());
}

TEST_F(CommandsTest, LogsOneDownloadInDetail) {
    add({u"a"_s, u"b"_s});
    const support::LogRecorder log;
    platform::setDebugLogEnabled(false);
    const auto logBoth = [this] {
        for (const char* name : {"a", "b"}) {
            const engine::DownloadPtr one = download(QString::fromLatin1(name));
            engine::debugLog(*one, [&] { return one->description(); });
        }
    };
    logBoth();
    EXPECT_EQ(log.lines(), QStringList());
    perform(app::contextMenu(commands, {download(u"a"_s)}), u"Debug Logging"_s);
    EXPECT_TRUE(leadingLines({download(u"a"_s)}).contains(u"Debug Logging [x]"_s));
    logBoth();
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines()[0].contains(u"a.example"_s)) << log.lines()[0].toStdString();
    perform(app::contextMenu(commands, {download(u"a"_s)}), u"Debug Logging"_s);
    logBoth();
    EXPECT_EQ(log.lines().size(), 1);
    platform::setDebugLogEnabled(true);
    EXPECT_TRUE(leadingLines({download(u"b"_s)}).contains(u"(Debug Logging) [x]"_s));
}

TEST_F(CommandsTest, OffersForSeveralWhatAllOfThemAllow) {
    add(numbered(11));
    const auto count = [this] {
        return leadingLines(controller->downloads()).filter(u"http"_s).size();
    };
    EXPECT_EQ(leadingLines(controller->downloads()).constFirst(), u"Start Downloads"_s);
    EXPECT_EQ(count(), 9);
    EXPECT_TRUE(leadingLines(controller->downloads()).contains(u"((2 more))"_s));
    perform(app::contextMenu(commands, controller->downloads()), u"Copy URLs"_s);
    EXPECT_EQ(frontEnd.copied.urls.value_or(QStringList()).size(), 11);
    EXPECT_EQ(frontEnd.copied.text.value_or(QString()).count(u'\n'), 10);

    setStatus(u"f0"_s, engine::DQDownloadStatusDownloading);
    EXPECT_EQ(leadingLines(controller->downloads()).constFirst(), u"Remove"_s);

    // A click beside the selection is about that row alone.
    controller->selectDownloads({download(u"f1"_s), download(u"f2"_s)});
    EXPECT_EQ(Core::names(app::clickedDownloads(*controller, 2)).size(), 2);
    EXPECT_EQ(Core::names(app::clickedDownloads(*controller, 5)), QStringList{u"f5"_s});
    EXPECT_TRUE(app::clickedDownloads(*controller, -1).empty());
    EXPECT_EQ(selected().size(), 2);

    commands.perform(Command::Move, app::MoveToBottom);
    EXPECT_EQ(queue().mid(9), (QStringList{u"f1"_s, u"f2"_s}));
    commands.perform(Command::Move, app::MoveUp);
    EXPECT_EQ(queue().mid(8), (QStringList{u"f1"_s, u"f2"_s, u"f10"_s}));

    controller->queue().remove(*download(u"f10"_s));
    EXPECT_EQ(count(), 10);
    commands.perform(Command::CancelAll, 1);
    EXPECT_EQ(controller->numberOfDownloads(), 10) << "the user keeps them";
    commands.perform(Command::Remove);
    EXPECT_EQ(controller->numberOfDownloads(), 8);
    EXPECT_EQ(frontEnd.alerts.size(), 1U);
}

TEST_F(CommandsTest, TheStatusItemPutsTheProgramIntoASubmenuIfWanted) {
    const QStringList items{u"(About Orlop)"_s, u"(Check for Updates...)"_s, u"(Help)"_s, u"-"_s,
                            u"Quit"_s};
    EXPECT_EQ(lines(app::statusItemProgramItems(commands)), items);
    defaults.set(app::settings::useStatusItemMetaSubmenu, true);
    const app::Menu menu = app::statusItemProgramItems(commands);
    EXPECT_EQ(lines(menu), QStringList{u"Orlop >"_s});
    EXPECT_EQ(lines(menu.front().items), items);
}

}  // namespace
