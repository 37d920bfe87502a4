// The host that browsers start to hand downloads over. On standard output goes nothing but its
// answers while a browser calls.
#include <unistd.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <csignal>
#include <cstdio>

#include "browser/bus_service.h"
#include "browser/callers.h"
#include "browser/host.h"
#include "browser/host_manifests.h"
#include "platform/files/files.h"

namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int statusBadUsage = 2;
constexpr const char* usage =
    "usage: orlop-browser --install [--browser NAME]...\n"
    "       orlop-browser --uninstall [--browser NAME]...\n"
    "       orlop-browser --print-manifest [--browser NAME] [--program PATH]\n"
    "       orlop-browser --help | --version\n"
    "Lets browsers hand downloads over to Orlop. Browsers start it by themselves.\n"
    "NAME: firefox, chromium, chrome, brave, edge or vivaldi; without it, all that you have.\n";

int refuse() {
    std::fputs(usage, stderr);
    return statusBadUsage;
}

struct Options {
    QStringList browsers;
    QString program = QCoreApplication::applicationFilePath();
};

/// Nothing: something is there that is no option.
std::optional<Options> readOptions(const QStringList& arguments) {
    Options options;
    for (qsizetype at = 1; at < arguments.size(); at += 2) {
        const QString& name = arguments.at(at);
        if (at + 1 == arguments.size())
            return std::nullopt;
        if (name == "--browser"_L1)
            options.browsers.append(arguments.at(at + 1));
        else if (name == "--program"_L1)
            options.program = arguments.at(at + 1);
        else
            return std::nullopt;
    }
    return options;
}

int tell(const browser::InstallReport& report) {
    for (const QString& line : report.lines)
        std::printf("%s\n", line.toLocal8Bit().constData());
    return report.hasFailed ? EXIT_FAILURE : EXIT_SUCCESS;
}

int install(const Options& options) {
    browser::InstallReport report = browser::installManifests(options.browsers, options.program);
    browser::installBusService(QCoreApplication::applicationDirPath() + "/orlop"_L1, report);
    return tell(report);
}

int uninstall(const Options& options) {
    browser::InstallReport report = browser::uninstallManifests(options.browsers);
    // Other browsers may go on with it.
    if (options.browsers.isEmpty())
        browser::uninstallBusService(report);
    if (report.lines.isEmpty())
        report.lines.append(u"There was nothing to remove."_s);
    return tell(report);
}

int printManifest(const Options& options) {
    const auto known = browser::knownBrowsers();
    const QString name = options.browsers.value(0, u"chromium"_s);
    const auto one = std::ranges::find(known, name, &browser::Browser::name);
    if (options.browsers.size() > 1 || one == known.end())
        return refuse();
    std::fputs(browser::hostManifest(one->isFirefox, options.program).constData(), stdout);
    return EXIT_SUCCESS;
}

int runCommand(const QStringList& arguments) {
    const QString action = arguments.value(0);
    const std::optional<Options> options = readOptions(arguments);
    if (action == "--version"_L1) {
        std::puts("orlop-browser " ORLOP_VERSION);
        return EXIT_SUCCESS;
    }
    if (action == "--help"_L1) {
        std::fputs(usage, stdout);
        return EXIT_SUCCESS;
    }
    if (options && action == "--install"_L1)
        return install(*options);
    if (options && action == "--uninstall"_L1)
        return uninstall(*options);
    if (options && action == "--print-manifest"_L1)
        return printManifest(*options);
    return refuse();
}

int runHost(QCoreApplication& application) {
    // A browser that went away is noticed by the write that fails.
    std::signal(SIGPIPE, SIG_IGN);
    browser::OrlopBus bus(QDBusConnection::sessionBus());
    browser::Host host(bus, STDIN_FILENO, STDOUT_FILENO);
    QObject::connect(&host, &browser::Host::ended, &application, [](bool isFailure) {
        QCoreApplication::exit(isFailure ? EXIT_FAILURE : EXIT_SUCCESS);
    });
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    platform::adoptHomeFolder();
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().sliced(1);
    const std::optional<bool> isOurs = browser::isOurExtension(arguments);
    if (!isOurs)
        return runCommand(arguments);
    if (*isOurs)
        return runHost(application);
    std::fputs("orlop-browser: this extension may not hand downloads over\n", stderr);
    return EXIT_FAILURE;
}
