#include "ui/window/desktop_windows.h"

#include <QMessageBox>
#include <QPushButton>
#include <utility>

#include "app/commands/bulk_commands.h"
#include "app/history/historian.h"
#include "app/main_controller.h"
#include "desktop/announcements/aih_announcer.h"
#include "desktop/updates/online_sources.h"
#include "engine/lifecycle/download.h"
#include "platform/base/user_defaults.h"
#include "ui/accessibility.h"
#include "ui/commands/main_menu.h"
#include "ui/history/history_menu.h"
#include "ui/log/log_window.h"
#include "ui/log/problem_report_dialog.h"
#include "ui/news/online_services.h"
#include "ui/rules/rule_editor.h"
#include "ui/schedule/toolbar_explanation.h"
#include "ui/settings/settings_window.h"
#include "ui/status/status_items.h"
#include "ui/text.h"
#include "ui/toolbar/toolbar.h"
#include "ui/window/desktop_front_end.h"
#include "ui/window/main_window.h"
#include "ui/window/notice_bars.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

using app::Command;

DesktopWindows::DesktopWindows(app::DQMainController& controller, DesktopFrontEnd& frontEnd)
    : frontEnd_(frontEnd),
      commands_({controller, platform::standardDefaults(), frontEnd.frontEnd()}) {
    commands_.provide(Command::ShowPreferences,
                      {[this](qint64) { showPreferencesSection({}); }, {}});
    commands_.editRule = [this](const QVariantMap& rule) {
        defineOrEditSpecialCase(rule, commands_.surroundings().controller.ruleBook(),
                                commands_.surroundings().defaults, window_.get());
    };
    tellWindowsAsWindows();
    provideLogCommands();
    provideOnlineCommands();
    window_ = std::make_unique<MainWindow>(commands_);
    makeHistoryMenu();
    tellProblems();
    QObject::connect(&window_->toolbar(), &MainToolbar::shortcutUsed, window_.get(),
                     [this](const QString& section) { explainShortcut(section); });
    frontEnd.setWindow(window_.get(), &controller);
    frontEnd.setPreferences([this](const QString& section) { showPreferencesSection(section); });
    goOnline();
    statusItems_ = std::make_unique<StatusItems>(commands_, frontEnd.icon());
    frontEnd.setStatusItems(statusItems_.get());
    announcer_ = std::make_unique<desktop::AIHAnnouncer>(commands_.surroundings().defaults);
    QObject::connect(&frontEnd.icon(), &desktop::ApplicationIcon::changed, announcer_.get(),
                     &desktop::AIHAnnouncer::announceImage);
}

DesktopWindows::~DesktopWindows() {
    frontEnd_.setStatusItems(nullptr);
    frontEnd_.setWindow(nullptr, nullptr);
    frontEnd_.setPreferences({});
}

/// Where the log cannot be shown, the core's own command stays: it turns debug logging on and off.
void DesktopWindows::provideLogCommands() {
    const auto& around = commands_.surroundings();
    if (!diagnostics::ILRJSONLogStream::toolPath().isEmpty()) {
        commands_.provide(Command::ToggleDebugLogging,
                          {[this, &around](qint64) {
                               if (!logWindow_) {
                                   logWindow_ = std::make_unique<LogWindow>(around.defaults);
                               }
                               logWindow_->displayLog();
                           },
                           [](qint64) -> app::CommandState {
                               return {true, std::nullopt, translated("&Log")};
                           }});
    }
    commands_.provide(Command::ReportProblem,
                      {[this, &around](qint64) {
                           showProblemReport(around.controller, around.defaults, window_.get());
                       },
                       {}});
}

void DesktopWindows::provideOnlineCommands() {
    commands_.provide(Command::CheckForUpdates, {[this](qint64) {
                                                     online_->updates().checkForUpdates();
                                                     showPreferencesSection(u"Updates"_s);
                                                 },
                                                 {}});
    commands_.provide(Command::ShowNews,
                      {[this](qint64) { online_->news().launchNews(false); },
                       [](qint64) -> app::CommandState {
                           return {!desktop::onlineSources().news.isEmpty(), std::nullopt, {}};
                       }});
}

void DesktopWindows::goOnline() {
    const auto& around = commands_.surroundings();
    online_ =
        std::make_unique<OnlineServices>(around.controller, around.defaults, window_->notices());
    QObject::connect(online_.get(), &OnlineServices::problem, window_.get(),
                     [this](const QString& text) { frontEnd_.noteProblem(text); });
}

/// What goes wrong at the edges of the program, where no row can show it.
void DesktopWindows::tellProblems() {
    const app::DQMainController* controller = &commands_.surroundings().controller;
    QObject::connect(controller, &app::DQMainController::filesNotOpened, window_.get(),
                     [this](const QStringList& problems) {
                         constexpr qsizetype mostShown = 10;
                         frontEnd_.noteProblem(problems.mid(0, mostShown).join(QLatin1Char('\n')));
                     });
    QObject::connect(
        controller, &app::DQMainController::volumesMissing, window_.get(),
        [this](const QString& text) {
            frontEnd_.confirm({app::Alert::Kind::MissingVolumes, u"Cannot resume downloading"_s,
                               text, u"OK"_s, QString()});
        });
    QObject::connect(controller, &app::DQMainController::volumesReturned, window_.get(),
                     [this](const app::Downloads& downloads) { offerToResume(downloads); });
    QObject::connect(controller, &app::DQMainController::goesOnUnseen, window_.get(),
                     [this](qint64 count) { tellOfGoingOn(count); });
    QObject::connect(controller, &app::DQMainController::machineRefused, window_.get(),
                     [this](const QString& sentence) { frontEnd_.noteProblem(sentence); });
    QObject::connect(
        controller, &app::DQMainController::fileNotThrownAway, window_.get(),
        [this](const QString& path) {
            frontEnd_.noteProblem(
                translated("%1 could not be moved to the trash and is still there.").arg(path));
        });
    QObject::connect(
        controller, &app::DQMainController::queueFileNotWritten, window_.get(),
        [this, wasTold = false](const QString& reason) mutable {
            if (!std::exchange(wasTold, true)) {
                frontEnd_.noteProblem(translated("The queue cannot be saved: %1").arg(reason));
            }
        });
    QObject::connect(
        controller, &app::DQMainController::queueNotSavedAtQuit, window_.get(),
        [this](const QString& problem) {
            frontEnd_.confirm({app::Alert::Kind::QueueNotSaved,
                               translated("The queue is not saved"), problem, u"OK"_s, QString()});
        });
}

/// Not modal: whoever does not answer has closed the window, and no more.
void DesktopWindows::tellOfGoingOn(qint64 count) {
    auto* box = new QMessageBox(
        QMessageBox::Information, u"Orlop"_s,
        alertTitle(count == 1 ? translated("Orlop goes on with 1 download")
                              : translated("Orlop goes on with %1 downloads").arg(count)));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->setInformativeText(
        translated("Closing the window does not end it. Start Orlop again to "
                   "see the window."));
    const QPushButton* quit = box->addButton(translated("Quit"), QMessageBox::DestructiveRole);
    const QPushButton* show = box->addButton(translated("Show"), QMessageBox::AcceptRole);
    box->setDefaultButton(box->addButton(QMessageBox::Ok));
    box->setEscapeButton(QMessageBox::Ok);
    QObject::connect(box, &QMessageBox::buttonClicked, window_.get(),
                     [this, quit, show](const QAbstractButton* clicked) {
                         if (clicked == quit) {
                             commands_.perform(Command::Quit);
                         } else if (clicked == show) {
                             commands_.perform(Command::ShowDownloadWindow);
                         }
                     });
    box->show();
}

void DesktopWindows::offerToResume(const app::Downloads& downloads) {
    const QString text =
        downloads.size() == 1
            ? translated("%1 can go on: its volume is back.").arg(downloads.front()->displayName())
            : translated("%1 downloads can go on: their volume is back.").arg(downloads.size());
    window_->notices().show({u"volumes"_s, text, translated("Resume"), [this, downloads] {
                                 app::queuePaused(commands_.surroundings().controller.queue(),
                                                  engine::downloadsFromCollectionMatchingStatusMask(
                                                      downloads, engine::DQDownloadStatusPaused));
                             }});
}

void DesktopWindows::makeHistoryMenu() {
    const auto& around = commands_.surroundings();
    auto* menu = new HistoryMenu(app::historian(), around.controller, around.defaults,
                                 HistoryMenu::SearchField::Shown, window_.get());
    menu->setTitle(translated("H&istory"));
    window_->mainMenu().setHistoryMenu(*menu);
}

void DesktopWindows::explainShortcut(const QString& section) {
    showToolbarButtonExplanation(section, commands_.surroundings().defaults,
                                 [this](const QString& shown) -> QWidget* {
                                     showPreferencesSection(shown);
                                     return preferencesWindow.get();
                                 });
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
