#include "ui/window/window_commands.h"

#include <QLineEdit>
#include <QMenuBar>
#include <QTimer>

#include "app/addresses/address_change.h"
#include "app/checksums/verification.h"
#include "app/commands/commands.h"
#include "app/main_controller.h"
#include "app/settings.h"
#include "help/settings.h"
#include "platform/base/user_defaults.h"
#include "ui/addresses/address_panel.h"
#include "ui/checksums/checksum_panel.h"
#include "ui/help/about_panel.h"
#include "ui/help/help_window.h"
#include "ui/help/key_tables.h"
#include "ui/list/download_list.h"
#include "ui/speed/speed_limit_panel.h"
#include "ui/toolbar/toolbar.h"
#include "ui/window/address_entry.h"
#include "ui/window/main_window.h"

namespace ui {
namespace {

using app::Command;
using app::CommandState;

void provideEntryCommands(app::Commands& commands, AddressEntry& entry) {
    commands.provide(Command::OpenURL, {[&entry](qint64) { entry.openURL(); }, {}});
    commands.provide(Command::OpenFile, {[&entry](qint64) { entry.openFile(); }, {}});
    commands.provide(Command::OpenFolder, {[&entry](qint64) { entry.openFolder(); }, {}});
    for (const Command paste : {Command::OpenURLFromPasteboard, Command::Paste}) {
        commands.provide(paste, {[&entry](qint64) { entry.openURLFromPasteboard(); }, {}});
    }
}

void provideListSelectionCommands(app::Commands& commands, MainWindow& window) {
    const auto hasItems = [&window](qint64) -> CommandState {
        return {window.list().hasItems(), {}, {}};
    };
    commands.provide(Command::SelectAll,
                     {[&window](qint64) { window.list().selectAll(); }, hasItems});
    commands.provide(Command::DeselectAll,
                     {[&window](qint64) { window.list().clearSelection(); }, hasItems});
    commands.provide(Command::Find,
                     {[&window](qint64) {
                          window.toolbar().filterField()->setFocus(Qt::ShortcutFocusReason);
                          window.toolbar().filterField()->selectAll();
                      },
                      [&window](qint64 tag) -> CommandState {
                          return {tag == 1 && window.toolbar().filterField() != nullptr, {}, {}};
                      }});
}

void provideRowCommands(app::Commands& commands, MainWindow& window) {
    app::DQMainController& controller = commands.surroundings().controller;
    commands.provideForRow(
        Command::Verify,
        {app::canExpectChecksum, [&controller, &window](const engine::DownloadPtr& download) {
             showChecksumPanel(window, controller, download);
         }});
    commands.provideForRow(
        Command::ChangeAddress,
        {app::canChangeAddress, [&controller, &window](const engine::DownloadPtr& download) {
             (new AddressPanel(controller, download, window))->show();
         }});
    const auto isUnfinished = [](const engine::DQDownload& download) {
        return download.status() != engine::DQDownloadStatusDone;
    };
    commands.provideForRow(Command::LimitSpeed,
                           {isUnfinished, [&controller, &window](const auto& download) {
                                showSpeedLimitPanel(window, controller, {download});
                            }});
    const auto limitable = [&controller, isUnfinished] {
        app::Downloads selected = controller.selectedDownloads();
        std::erase_if(selected, [&](const auto& download) { return !isUnfinished(*download); });
        return selected;
    };
    commands.provide(Command::LimitSpeed, {[&controller, &window, limitable](qint64) {
                                               showSpeedLimitPanel(window, controller, limitable());
                                           },
                                           [limitable](qint64) -> CommandState {
                                               return {!limitable().empty(), {}, {}};
                                           }});
}

}  // namespace

void provideWindowCommands(app::Commands& commands, MainWindow& window, AddressEntry& entry) {
    provideEntryCommands(commands, entry);
    provideListSelectionCommands(commands, window);
    provideRowCommands(commands, window);
    const platform::UserDefaults& defaults = commands.surroundings().defaults;
    commands.provide(Command::CloseWindow, {[&window](qint64) { window.close(); }, {}});
    commands.provide(Command::Minimize, {[&window](qint64) { window.showMinimized(); }, {}});
    commands.provide(
        Command::FullScreen,
        {[&window](qint64) { window.setWindowState(window.windowState() ^ Qt::WindowFullScreen); },
         [&window, &defaults](qint64) -> CommandState {
             return {defaults.get(app::settings::fullScreenModeBehavior) == 1,
                     window.isFullScreen(),
                     {}};
         }});
    commands.provide(Command::CustomizeToolbar,
                     {[&window](qint64) { window.toolbar().runCustomizationPalette(); }, {}});
    const auto help = [&window, &settings = commands.surroundings().defaults]() -> HelpWindow& {
        return showHelp(window, settings, [&window] { return keyTables(*window.menuBar()); });
    };
    commands.provide(Command::ShowHelp, {[help](qint64) { help(); }, {}});
    commands.provide(Command::SearchHelp, {[help](qint64) { help().beginSearch(); }, {}});
    platform::UserDefaults& settings = commands.surroundings().defaults;
    if (const QString page = settings.get(help::settings::openRelativePath); !page.isEmpty()) {
        settings.removeObject(help::settings::openRelativePath.name());
        QTimer::singleShot(0, &window,
                           [help, page] { help().openPageAtRelativePathWithFragment(page); });
    }
    commands.provide(Command::ShowAbout, {[&window](qint64) { showAboutPanel(window); }, {}});
}

}  // namespace ui
