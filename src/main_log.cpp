#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "diagnostics/log_command.h"
#include "platform/base/log_store.h"
#include "platform/base/log_writer.h"
#include "platform/files/files.h"

namespace {

/// https://no-color.org
bool wantsColors() {
    const char* const refusal = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    return isatty(STDOUT_FILENO) && (refusal == nullptr || *refusal == '\0') &&
           (terminal == nullptr || std::string_view(terminal) != "dumb");
}

}  // namespace

int main(int argc, char** argv) {
    constexpr int statusBadUsage = 2;
    platform::adoptHomeFolder();
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const diagnostics::LogRequest request = diagnostics::parsedLogArguments(arguments);
    if (!request.problem.isEmpty()) {
        std::fprintf(stderr, "orlop-log: %s\n", request.problem.toLocal8Bit().constData());
        return statusBadUsage;
    }
    switch (request.action) {
        case diagnostics::LogRequest::Action::Help:
            std::fputs(diagnostics::logUsage(), stdout);
            return 0;
        case diagnostics::LogRequest::Action::Version:
            std::puts("orlop-log " ORLOP_VERSION);
            return 0;
        default:
            platform::recoverLogLines(platform::logStoreFolder());
            return diagnostics::runLogCommand(request, platform::logStoreFolder(), STDOUT_FILENO,
                                              wantsColors());
    }
}
