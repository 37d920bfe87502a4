#include "ui/commands/main_menu.h"

#include <QMenu>
#include <QMenuBar>
#include <QShortcut>

#include "app/commands/commands.h"
#include "app/commands/folder_items.h"
#include "app/main_controller.h"
#include "ui/commands/command_actions.h"
#include "ui/commands/menu_items.h"
#include "ui/text.h"

namespace ui {

using app::Command;

MainMenu::MainMenu(QMenuBar& bar, CommandActions& actions, const app::Commands& commands)
    : bar_(bar), actions_(actions), commands_(commands) {
    addFileMenu();
    addEditMenu();
    addViewMenu();
    addQueueMenu();
    addWindowMenu();
    addHelpMenu();
    // The desktop's key for menu bars; the toolkit knows only Alt.
    auto* open = new QShortcut(Qt::Key_F10, &bar_);
    connect(open, &QShortcut::activated, &bar_,
            [this] { bar_.setActiveAction(bar_.actions().constFirst()); });
}

QMenu* MainMenu::addMenu(const QString& title) {
    QMenu* menu = bar_.addMenu(title);
    actions_.watch(*menu);
    return menu;
}

void MainMenu::addFileMenu() {
    fileMenu = addMenu(translated("&File"));
    for (const Command command : {Command::OpenURL, Command::OpenFile, Command::OpenFolder,
                                  Command::OpenURLFromPasteboard, Command::StopIntake}) {
        actions_.addTo(*fileMenu, command);
    }
    belowFolders_ = fileMenu->addSeparator();
    actions_.addTo(*fileMenu, Command::CloseWindow);
    actions_.addTo(*fileMenu, Command::Quit);
    connect(fileMenu, &QMenu::aboutToShow, this, &MainMenu::updateFolders);
}

void MainMenu::updateFolders() {
    qDeleteAll(folders_);
    app::Menu items{app::heading(translated("Download to"))};
    app::append(items, app::downloadsFolderItems(commands_, false));
    folders_ = addMenuItems(*fileMenu, items, belowFolders_);
}

void MainMenu::addEditMenu() {
    QMenu* menu = addMenu(translated("&Edit"));
    actions_.addTo(*menu, Command::Undo);
    menu->addSeparator();
    actions_.addTo(*menu, Command::Copy);
    actions_.addTo(*menu, Command::Paste);
    actions_.addTo(*menu, Command::Remove);
    menu->addSeparator();
    actions_.addTo(*menu, Command::SelectAll);
    actions_.addTo(*menu, Command::DeselectAll);
    menu->addSeparator();
    actions_.addTo(*menu, Command::Find, 1);
    menu->addSeparator();
    actions_.addTo(*menu, Command::ShowPreferences);
}

void MainMenu::addViewMenu() {
    QMenu* menu = addMenu(translated("&View"));
    QMenu* sortMenu = menu->addMenu(translated("&Sort by"));
    actions_.watch(*sortMenu);
    actions_.addAllTo(*sortMenu, Command::ChangeSorting);
    QMenu* progressBarStyleMenu = menu->addMenu(translated("Progress &Indicator"));
    actions_.watch(*progressBarStyleMenu);
    actions_.addAllTo(*progressBarStyleMenu, Command::ChangeProgressBarStyle);
    menu->addSeparator();
    actions_.addTo(*menu, Command::ToggleLocationKeyDisplayNames);
    actions_.addTo(*menu, Command::TogglePrivateDownloading);
    menu->addSeparator();
    actions_.addTo(*menu, Command::ToggleDetails);
    actions_.addTo(*menu, Command::ToggleDetailsBeside);
    menu->addSeparator();
    actions_.addTo(*menu, Command::CustomizeToolbar);
    actions_.addTo(*menu, Command::FullScreen);
}

void MainMenu::addQueueMenu() {
    QMenu* menu = addMenu(translated("&Queue"));
    for (const Command command : {Command::TogglePause, Command::QueuePaused, Command::PauseAll,
                                  Command::PauseQueued, Command::Retry}) {
        actions_.addTo(*menu, command);
    }
    menu->addSeparator();
    actions_.addTo(*menu, Command::CancelAll, 1);
    actions_.addTo(*menu, Command::Clear);
    menu->addSeparator();
    actions_.addTo(*menu, Command::Verify);
    actions_.addTo(*menu, Command::ChangeAddress);
    actions_.addTo(*menu, Command::LimitSpeed);
    actions_.addTo(*menu, Command::OpenInBrowser);
    menu->addSeparator();
    QMenu* order = menu->addMenu(translated("Rearran&ge Queue by"));
    connect(menu, &QMenu::aboutToShow, order, [this, order] {
        const auto& controller = commands_.surroundings().controller;
        order->menuAction()->setEnabled(controller.numberOfDownloads() > 1);
    });
    actions_.watch(*order);
    actions_.addAllTo(*order, Command::Rearrange);
    QMenu* movement = menu->addMenu(translated("&Move Selected"));
    actions_.watch(*movement);
    actions_.addAllTo(*movement, Command::Move);
    menu->addSeparator();
    for (const Command command :
         {Command::ToggleAcceleration, Command::ToggleThrottle, Command::ToggleScheduledQueuing,
          Command::ToggleScheduledPausing}) {
        actions_.addTo(*menu, command);
    }
    menu->addSeparator();
    for (const Command command :
         {Command::ToggleAutoStart, Command::ToggleAutoSleep, Command::ToggleAutoShutDown}) {
        actions_.addTo(*menu, command);
    }
}

void MainMenu::addWindowMenu() {
    windowMenu_ = addMenu(translated("&Window"));
    actions_.addTo(*windowMenu_, Command::Minimize);
    windowMenu_->addSeparator();
    actions_.addTo(*windowMenu_, Command::ShowDownloadWindow);
}

void MainMenu::addHelpMenu() {
    QMenu* menu = addMenu(translated("&Help"));
    actions_.addTo(*menu, Command::ShowHelp);
    actions_.addTo(*menu, Command::SearchHelp);
    actions_.addTo(*menu, Command::CheckForUpdates);
    actions_.addTo(*menu, Command::ShowNews);
    actions_.addTo(*menu, Command::ToggleDebugLogging);
    actions_.addTo(*menu, Command::ReportProblem);
    menu->addSeparator();
    actions_.addTo(*menu, Command::ShowAbout);
}

void MainMenu::setHistoryMenu(QMenu& menu) {
    bar_.insertMenu(windowMenu_->menuAction(), &menu);
}

}  // namespace ui
