#include <QApplication>
#include <csignal>
#include <cstdio>
#include <memory>

#include "app/application.h"
#include "app/main_controller.h"
#include "app/status/queue_status_reporter.h"
#include "platform/base/arguments.h"
#include "platform/session/signal_watcher.h"
#include "ui/art/appearance.h"
#include "ui/art/icons.h"
#include "ui/authentication/authentication_panel.h"
#include "ui/language.h"
#include "ui/settings.h"
#include "ui/window/desktop_front_end.h"
#include "ui/window/desktop_windows.h"

namespace {

ui::Language::Pseudo pseudoLocale(const QVariantMap& defaults) {
    using Pseudo = ui::Language::Pseudo;
    const int number = defaults.value(ui::settings::pseudoLocale.name()).toInt();
    return number == 1 ? Pseudo::Accented : number == 2 ? Pseudo::RightToLeft : Pseudo::None;
}

}  // namespace

int main(int argumentCount, char** argumentValues) {
    // Qt would take arguments with one dash for its own; they are settings here.
    int ownArguments = 1;
    QApplication application(ownArguments, argumentValues);
    QApplication::setApplicationName(QStringLiteral("Orlop"));
    QApplication::setApplicationVersion(QStringLiteral(ORLOP_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("com.tarnworks.Orlop"));
    QApplication::setWindowIcon(ui::applicationIcon());
    QApplication::setQuitOnLastWindowClosed(false);

    const ui::Appearance appearance;

    QStringList arguments;
    for (int index = 1; index < argumentCount; ++index) {
        arguments.push_back(QString::fromLocal8Bit(argumentValues[index]));
    }
    const platform::ParsedArguments parsed = platform::parseArguments(arguments);
    const ui::Language language(application, QLocale(), pseudoLocale(parsed.defaults));

    ui::DesktopFrontEnd frontEnd;
    ui::AuthenticationPanel authenticationPanel;
    std::unique_ptr<ui::DesktopWindows> windows;
    app::Application core({parsed.defaults, parsed.rest});
    app::FrontEnd parts = frontEnd.frontEnd();
    parts.authentication = &authenticationPanel;
    const auto start = core.start(parts, [&](app::DQMainController& controller) {
        QObject::connect(&core.statusReporter(), &app::QueueStatusReporter::applicationImageChanged,
                         &frontEnd.icon(), &desktop::ApplicationIcon::show);
        windows = std::make_unique<ui::DesktopWindows>(controller, frontEnd);
    });
    if (!start.problem.isEmpty()) {
        std::fprintf(stderr, "orlop: %s\n", qUtf8Printable(start.problem));
        frontEnd.tellProblem(start.problem);
    }
    if (start.outcome != app::Application::Start::Outcome::Started) {
        return start.outcome == app::Application::Start::Outcome::Failed ? 1 : 0;
    }
    core.setActivationHandler([&](const QString& activationToken) {
        // Where the desktop lets no program take the focus by itself.
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
        frontEnd.showDownloadWindow(true);
    });
    QObject::connect(&core.controller(), &app::DQMainController::terminated, &application,
                     &QCoreApplication::quit, Qt::QueuedConnection);
    // A session that ends, or a user at a terminal, gets no question: all is paused and saved.
    const platform::SignalWatcher signalWatcher({{SIGTERM}, {SIGHUP}, {SIGINT, true}}, [&](int) {
        frontEnd.stopAsking();
        core.controller().terminate();
    });
    const int status = QApplication::exec();
    windows.reset();
    core.stop();
    return status;
}
