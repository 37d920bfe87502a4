#include <QApplication>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "app/application.h"
#include "app/lifecycle/command_line.h"
#include "app/main_controller.h"
#include "app/status/queue_status_reporter.h"
#include "desktop/settings.h"
#include "diagnostics/settings.h"
#include "platform/base/log_writer.h"
#include "platform/files/files.h"
#include "platform/session/bundled_gio.h"
#include "platform/session/mute_buses.h"
#include "platform/session/signal_watcher.h"
#include "scripting/launching.h"
#include "scripting/service.h"
#include "ui/art/appearance.h"
#include "ui/art/icons.h"
#include "ui/art/program_style.h"
#include "ui/authentication/authentication_panel.h"
#include "ui/display.h"
#include "ui/language.h"
#include "ui/settings.h"
#include "ui/window/clipboard.h"
#include "ui/window/desktop_front_end.h"
#include "ui/window/desktop_windows.h"

namespace {

ui::Language::Pseudo pseudoLocale(const QVariantMap& defaults) {
    using Pseudo = ui::Language::Pseudo;
    const int number = defaults.value(ui::settings::pseudoLocale.name()).toInt();
    return number == 1 ? Pseudo::Accented : number == 2 ? Pseudo::RightToLeft : Pseudo::None;
}

constexpr const char* usage =
    "Usage: orlop [-KEY VALUE]... [ADDRESS|FILE]...\n"
    "Opens the window and takes in addresses, lists of addresses (.txt), folders and begun\n"
    "downloads (.orlop). If Orlop is running already, it is handed what is given.\n"
    "\n"
    "  -KEY VALUE   a setting for this run only, such as -\"Downloads Folder\" /tmp\n"
    "  --background come up without a window in front\n"
    "  --add-from-clipboard   take the addresses in the clipboard in\n"
    "  --pause-all, --quit    ask it of the Orlop that is running\n"
    "  --           only addresses and files follow\n"
    "  --help       show this text\n"
    "  --version    show the version\n"
    "\n"
    "orlop-terminal is the same without a window.\n";

/// What can be answered without a display. Nothing: the program is to run.
std::optional<int> answerAtOnce(const app::CommandLine& line) {
    constexpr int statusBadUsage = 2;
    if (line.action == app::CommandLine::Action::ShowHelp) {
        std::fputs(usage, stdout);
        return 0;
    }
    if (line.action == app::CommandLine::Action::ShowVersion) {
        std::puts("orlop " ORLOP_VERSION);
        return 0;
    }
    if (!line.problem.isEmpty()) {
        std::fprintf(stderr, "orlop: %s\n", qUtf8Printable(line.problem));
        return statusBadUsage;
    }
    return std::nullopt;
}

/// What only a running program can be asked. The exit status.
int askRunningProgram(int& argumentCount, char** argumentValues, const QString& action) {
    constexpr int statusNotRunning = 3;
    const QCoreApplication application(argumentCount, argumentValues);
    if (scripting::didAskRunningProgram(action, {})) {
        return 0;
    }
    std::fputs("orlop: no Orlop that is running answers on the session bus\n", stderr);
    return statusNotRunning;
}

/// A process with a display can take over what this one cannot show.
int runWithoutDisplay(int& argumentCount, char** argumentValues, const app::CommandLine& line) {
    const QCoreApplication application(argumentCount, argumentValues);
    QCoreApplication::setApplicationName(QStringLiteral("Orlop"));
    app::Application core({line.settings, line.items});
    const auto start = core.handOverOnly();
    if (start && start->problem.isEmpty()) {
        return 0;
    }
    std::fprintf(stderr, "orlop: %s\n",
                 start ? qUtf8Printable(start->problem)
                       : "there is no display to open a window on; orlop-terminal needs none");
    return 1;
}

}  // namespace

int main(int argumentCount, char** argumentValues) {
    platform::adoptHomeFolder();
    platform::useBundledGio();
    const QStringList muteBuses = platform::leaveMuteBusesAlone();
    platform::letWritesFail();
    QStringList arguments;
    for (int index = 1; index < argumentCount; ++index) {
        arguments.push_back(QString::fromLocal8Bit(argumentValues[index]));
    }
    const app::CommandLine line = app::parsedCommandLine(arguments);
    if (const std::optional<int> status = answerAtOnce(line)) {
        return *status;
    }
    std::optional<platform::ProgramLog> log(std::in_place);
    platform::logMuteBuses(muteBuses);
    // Qt would take arguments with one dash for its own; they are settings here.
    int ownArguments = 1;
    const bool addsFromClipboard = line.programAction == app::actions::addFromClipboard;
    if (!line.programAction.isEmpty() && !addsFromClipboard) {
        return askRunningProgram(ownArguments, argumentValues, line.programAction);
    }
    if (!ui::hasDisplay()) {
        return runWithoutDisplay(ownArguments, argumentValues, line);
    }
    ui::prepareForWayland();
    QApplication application(ownArguments, argumentValues);
    QApplication::setApplicationName(QStringLiteral("Orlop"));
    QApplication::setApplicationVersion(QStringLiteral(ORLOP_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("com.tarnworks.Orlop"));
    QApplication::setWindowIcon(ui::applicationIcon());
    QApplication::setQuitOnLastWindowClosed(false);

    if (addsFromClipboard &&
        scripting::didAskRunningProgram(line.programAction,
                                        qEnvironmentVariable("XDG_ACTIVATION_TOKEN"))) {
        return 0;
    }
    QApplication::setStyle(new ui::ProgramStyle);
    const ui::Appearance appearance;

    const ui::Language language(application, QLocale(), pseudoLocale(line.settings));

    ui::DesktopFrontEnd frontEnd;
    ui::AuthenticationPanel authenticationPanel;
    std::unique_ptr<ui::DesktopWindows> windows;
    app::Application core({line.settings, line.items, line.isInBackground});
    std::unique_ptr<scripting::Service> scripts;
    // Questions of the start have a loop of their own, before that of the program.
    bool isOver = false;
    const auto end = [&isOver] {
        isOver = true;
        QApplication::closeAllWindows();
        // Whether or not one of them would rather stay.
        QCoreApplication::exit();
    };
    std::optional<platform::SignalWatcher> signalWatcher;
    app::FrontEnd parts = frontEnd.frontEnd();
    parts.authentication = &authenticationPanel;
    const auto addFromClipboard = [&windows] {
        ui::whenClipboardCanBeRead(
            [&windows] { windows->commands().perform(app::Command::OpenURLFromPasteboard); });
    };
    const auto start = core.start(parts, [&](app::DQMainController& controller) {
        QObject::connect(
            &controller, &app::DQMainController::terminated, &application,
            [&] { frontEnd.afterFading(application, end); }, Qt::QueuedConnection);
        // A session that ends, or a user at a terminal, gets no question: all is paused and saved.
        signalWatcher.emplace(
            std::vector<platform::WatchedSignal>{{SIGTERM}, {SIGHUP}, {SIGINT, true}}, [&](int) {
                frontEnd.stopAsking();
                core.controller().terminate();
            });
        QObject::connect(&core.statusReporter(), &app::QueueStatusReporter::applicationImageChanged,
                         &frontEnd.icon(), &desktop::ApplicationIcon::show);
        windows = std::make_unique<ui::DesktopWindows>(controller, frontEnd);
        scripts = std::make_unique<scripting::Service>(
            controller, platform::userDataFolder(),
            scripting::Launches{std::bind_front(&app::Application::receive, &core),
                                addFromClipboard});
    });
    if (!start.problem.isEmpty()) {
        std::fprintf(stderr, "orlop: %s\n", qUtf8Printable(start.problem));
        if (!isOver) {
            frontEnd.tellProblem(start.problem);
        }
    }
    if (start.outcome != app::Application::Start::Outcome::Started) {
        return start.outcome == app::Application::Start::Outcome::Failed ? 1 : 0;
    }
    if (addsFromClipboard && !isOver) {
        addFromClipboard();
    }
    core.setActivationHandler([&](const QString& activationToken) {
        // Where the desktop lets no program take the focus by itself.
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
        frontEnd.showDownloadWindow(true);
    });
    // The display may be gone before a signal comes.
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &application, [&] {
        core.controller().writeArchiveBeforeQuitting(false);
        core.controller().finishWriting();
    });
    const int status = isOver ? 0 : QApplication::exec();
    scripts.reset();
    windows.reset();
    if (!core.stop()) {
        log.reset();
        std::_Exit(status);
    }
    return status;
}
