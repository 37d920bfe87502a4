#include <langinfo.h>
#include <unistd.h>

#include <QCoreApplication>
#include <clocale>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

#include "app/application.h"
#include "app/terminal/program.h"
#include "app/terminal/terminal_output.h"
// The settings of the windows can be given here as well: they are the same settings.
#include "desktop/settings.h"
#include "diagnostics/settings.h"
#include "platform/base/log_writer.h"
#include "platform/files/files.h"
#include "platform/session/bundled_gio.h"
#include "platform/session/mute_buses.h"
#include "platform/session/signal_watcher.h"
#include "scripting/service.h"
#include "scripting/verbs/verbs.h"
#include "structured/settings.h"
#include "ui/settings.h"

namespace {

/// Qt wants the character set of the C library to be UTF-8, and complains on standard error where
/// it is not. What the terminal takes is decided apart from this.
void useUtf8() {
    std::setlocale(LC_ALL, "");
    if (std::string_view(nl_langinfo(CODESET)) == "UTF-8")
        return;
    if (const char* all = std::getenv("LC_ALL"); all && *all) {
        setenv("LANG", all, 1);
        unsetenv("LC_ALL");
    }
    setenv("LC_CTYPE", "C.UTF-8", 1);
}

}  // namespace

int main(int argc, char** argv) {
    platform::adoptHomeFolder();
    platform::useBundledGio();
    const QStringList muteBuses = platform::leaveMuteBusesAlone();
    const auto environment = QProcessEnvironment::systemEnvironment();
    platform::letWritesFail();
    useUtf8();
    std::optional<platform::ProgramLog> log(std::in_place);
    platform::logMuteBuses(muteBuses);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Orlop"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORLOP_VERSION));
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (const auto verb = scripting::parsedVerb(arguments)) {
        app::terminal::DescriptorOutput output(STDOUT_FILENO), errors(STDERR_FILENO);
        const auto mode = app::terminal::outputMode(output.isTerminal(), environment);
        return scripting::performVerb(*verb, output, errors, mode.glyphs);
    }
    const app::terminal::ProgramEnd end =
        app::terminal::runProgram(arguments, environment, [](app::Application& core) {
            return std::make_shared<scripting::Service>(
                core.controller(), platform::userDataFolder(),
                scripting::Launches{std::bind_front(&app::Application::receive, &core)});
        });
    // What ends here does not come back to let it write.
    log.reset();
    if (end.signal != 0)
        platform::endBySignal(end.signal);
    if (end.mustNotWait)
        std::_Exit(end.status);
    return end.status;
}
