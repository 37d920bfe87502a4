#pragma once

#include <memory>
#include <vector>

#include "app/commands/commands.h"
#include "ui/window/dialog_keys.h"

namespace engine {
class DQDownload;
}

namespace desktop {
class AIHAnnouncer;
}

namespace ui {

class DesktopFrontEnd;
class LogWindow;
class MainWindow;
class OnlineServices;
class SettingsWindow;
class StatusItems;

/// All windows of the program and the commands that connect them. One for the process.
class DesktopWindows {
public:
    /// Both outlive the windows.
    DesktopWindows(app::DQMainController& controller, DesktopFrontEnd& frontEnd);
    ~DesktopWindows();
    DesktopWindows(const DesktopWindows&) = delete;
    DesktopWindows& operator=(const DesktopWindows&) = delete;

    [[nodiscard]] app::Commands& commands() { return commands_; }

private:
    void makeHistoryMenu();
    void provideLogCommands();
    void provideOnlineCommands();
    void goOnline();
    void tellProblems();
    void tellOfGoingOn(qint64 count);
    void offerToResume(const std::vector<std::shared_ptr<engine::DQDownload>>& downloads);
    void explainShortcut(const QString& section);
    void showPreferencesSection(const QString& section);

    DesktopFrontEnd& frontEnd_;
    app::Commands commands_;
    DialogKeys dialogKeys_;
    std::unique_ptr<MainWindow> window_;
    std::unique_ptr<SettingsWindow> preferencesWindow;
    std::unique_ptr<LogWindow> logWindow_;
    std::unique_ptr<OnlineServices> online_;
    std::unique_ptr<StatusItems> statusItems_;
    std::unique_ptr<desktop::AIHAnnouncer> announcer_;
};

}  // namespace ui
