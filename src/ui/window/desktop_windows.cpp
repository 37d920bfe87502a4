#include "ui/window/desktop_windows.h"

#include "app/main_controller.h"
#include "platform/base/user_defaults.h"
#include "ui/settings/settings_window.h"
#include "ui/window/desktop_front_end.h"
#include "ui/window/main_window.h"

namespace ui {

using app::Command;

DesktopWindows::DesktopWindows(app::DQMainController& controller, DesktopFrontEnd& frontEnd)
    : frontEnd_(frontEnd),
      commands_({controller, platform::standardDefaults(), frontEnd.frontEnd()}) {
    commands_.provide(Command::ShowPreferences,
                      {[this](qint64) { showPreferencesSection({}); }, {}});
    window_ = std::make_unique<MainWindow>(commands_);
    frontEnd.setWindow(window_.get(), &controller);
}

DesktopWindows::~DesktopWindows() {
    frontEnd_.setWindow(nullptr, nullptr);
}

void DesktopWindows::showPreferencesSection(const QString& section) {
    if (!preferencesWindow) {
        preferencesWindow = std::make_unique<SettingsWindow>(commands_.surroundings().controller,
                                                             commands_.surroundings().defaults);
    }
    preferencesWindow->showPreferencesSection(section.isEmpty() && preferencesWindow->isVisible()
                                                  ? preferencesWindow->currentSection()
                                                  : section);
}

}  // namespace ui
