#include <cstdio>

#include "platform/base/defaults_command.h"
#include "platform/base/log.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"

namespace {

class StandardErrorSink final : public platform::LogSink {
public:
    void write(platform::LogLevel, const QString& line) override {
        std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
    }
};

}  // namespace

int main(int argc, char** argv) {
    platform::adoptHomeFolder();
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    platform::addLogSink(std::make_shared<StandardErrorSink>());
    platform::UserDefaults defaults(platform::userConfigFolder(), platform::defaultsDomain);
    const platform::CommandResult result = platform::runDefaultsCommand(arguments, defaults);
    std::fputs(result.output.toLocal8Bit().constData(), stdout);
    std::fputs(result.errors.toLocal8Bit().constData(), stderr);
    return result.status;
}
