#pragma once

#include <QList>
#include <QObject>

class QAction;
class QMenu;
class QMenuBar;

namespace app {
class Commands;
}

namespace ui {

class CommandActions;

/// The menu bar: every command, in the place where a Linux desktop has it.
class MainMenu final : public QObject {
    Q_OBJECT

public:
    /// All of it outlives the menu.
    MainMenu(QMenuBar& bar, CommandActions& actions, const app::Commands& commands);

    /// Goes between Queue and Window.
    void setHistoryMenu(QMenu& menu);

private:
    QMenu* addMenu(const QString& title);
    void addFileMenu();
    void addEditMenu();
    void addViewMenu();
    void addQueueMenu();
    void addWindowMenu();
    void addHelpMenu();
    void updateFolders();

    QMenuBar& bar_;
    CommandActions& actions_;
    const app::Commands& commands_;
    QMenu* fileMenu = nullptr;
    QMenu* windowMenu_ = nullptr;
    /// Of the file menu: the folders, and what stands below them.
    QList<QAction*> folders_;
    QAction* belowFolders_ = nullptr;
};

}  // namespace ui
