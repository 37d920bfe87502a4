// Runs one automatic configuration script and says which proxy it chose. Made for scripts from
// anywhere: see platform/net/proxies/script_protocol.h for how it is spoken to.
#include <unistd.h>

#include <QCoreApplication>
#include <cstdlib>
#include <optional>

#include "platform/net/proxies/script_protocol.h"
#include "proxy_script/name_lookup.h"
#include "proxy_script/sandbox.h"
#include "proxy_script/script_engine.h"

namespace {

namespace protocol = platform::script_protocol;

struct Task {
    QString url, host, script;
};

/// Nothing: too large, or not what it should be.
std::optional<Task> readTask() {
    constexpr qsizetype limit = protocol::maximumScriptBytes + protocol::maximumAnswerBytes;
    QByteArray bytes(limit + 1, Qt::Uninitialized);
    qsizetype used = 0;
    for (ssize_t size = 1; size > 0 && used < bytes.size(); used += std::max(size, ssize_t{0}))
        size =
            read(STDIN_FILENO, bytes.data() + used, static_cast<std::size_t>(bytes.size() - used));
    bytes.truncate(used);
    const qsizetype urlEnd = bytes.indexOf('\0');
    const qsizetype hostEnd = urlEnd < 0 ? -1 : bytes.indexOf('\0', urlEnd + 1);
    if (used > limit || hostEnd < 0)
        return std::nullopt;
    return Task{QString::fromUtf8(bytes.first(urlEnd)),
                QString::fromUtf8(bytes.sliced(urlEnd + 1, hostEnd - urlEnd - 1)),
                QString::fromUtf8(bytes.sliced(hostEnd + 1))};
}

void writeLine(char kind, const QString& text) {
    QByteArray line = kind + text.toUtf8().replace('\n', ' ') + '\n';
    const char* at = line.constData();
    for (qsizetype left = line.size(); left > 0;) {
        const ssize_t size = write(STDOUT_FILENO, at, static_cast<std::size_t>(left));
        if (size <= 0)
            return;
        at += size;
        left -= size;
    }
}

[[noreturn]] void finish(char kind, const QString& text) {
    writeLine(kind, text);
    // Nothing here needs an orderly end, which the sandbox would not allow.
    _exit(kind == protocol::resultLine ? EXIT_SUCCESS : EXIT_FAILURE);
}

/// The engine compiles nothing, since it may not make code, and looks at no clock's zone file
/// again.
void prepareEnvironment() {
    setenv("QV4_FORCE_INTERPRETER", "1", 1);
    setenv("QT_NO_GLIB", "1", 1);
    setenv("TZ", ":/etc/localtime", 0);
    tzset();
}

}  // namespace

int main(int argc, char** argv) {
    using namespace Qt::Literals::StringLiterals;
    proxy_script::NameLookup names;
    prepareEnvironment();
    QCoreApplication application(argc, argv);
    const std::optional<Task> task = readTask();
    if (!task || !names.isRunning())
        finish(protocol::errorLine, u"the task cannot be read"_s);
    if (!proxy_script::limitResources(protocol::memoryBytes, protocol::processorSeconds) ||
        !proxy_script::enterSandbox())
        finish(protocol::errorLine, u"scripts cannot be run safely on this system"_s);
    proxy_script::ScriptEngine engine(
        names, [](const QString& message) { writeLine(protocol::alertLine, message); });
    const proxy_script::Outcome outcome = engine.findProxy(task->script, task->url, task->host);
    if (outcome.error.isEmpty())
        finish(protocol::resultLine, outcome.result);
    finish(protocol::errorLine, outcome.error);
}
