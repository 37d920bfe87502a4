#include "platform/net/proxies/script_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <utility>

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

/// In memory, so that a process that does not read cannot make us wait.
Descriptor fileWith(const QByteArray& bytes) {
    Descriptor file(memfd_create("orlop", MFD_CLOEXEC));
    if (!file.isOpen() || !writeFully(file, bytes.constData(), bytes.size()) ||
        lseek(file.get(), 0, SEEK_SET) != 0)
        return Descriptor();
    return file;
}

/// What a new process is born with; the system's calls to prepare it all answer 0 or an error.
class Birth {
public:
    Birth() {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
    }
    ~Birth() {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&actions_);
    }
    Birth(const Birth&) = delete;
    Birth& operator=(const Birth&) = delete;

    [[nodiscard]] bool prepare(int input, int output) {
        sigset_t none, all;
        sigemptyset(&none);
        sigfillset(&all);
        return posix_spawn_file_actions_adddup2(&actions_, input, STDIN_FILENO) == 0 &&
               posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO) == 0 &&
               posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY,
                                                0) == 0 &&
               posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1) == 0 &&
               posix_spawn_file_actions_addchdir_np(&actions_, "/") == 0 &&
               posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
               posix_spawnattr_setsigdefault(&attributes_, &all) == 0 &&
               posix_spawnattr_setflags(&attributes_,
                                        POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF) == 0;
    }
    /// Negative: it was not born.
    [[nodiscard]] pid_t give(const QByteArray& program) const {
        pid_t process = -1;
        char* const arguments[] = {const_cast<char*>(program.constData()), nullptr};
        char* const environment[] = {nullptr};
        const int result = posix_spawn(&process, program.constData(), &actions_, &attributes_,
                                       arguments, environment);
        return result == 0 ? process : -1;
    }

private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

}  // namespace

std::unique_ptr<ScriptProcess> ScriptProcess::start(const QString& program,
                                                    const QByteArray& input) {
    const Descriptor inputFile = fileWith(input);
    int ends[2];
    if (!inputFile.isOpen() || pipe2(ends, O_CLOEXEC) != 0)
        return nullptr;
    Descriptor reading(ends[0]);
    const Descriptor writing(ends[1]);
    fcntl(reading.get(), F_SETFL, O_NONBLOCK);
    Birth birth;
    if (!birth.prepare(inputFile.get(), writing.get()))
        return nullptr;
    const pid_t process = birth.give(QFile::encodeName(program));
    if (process < 0)
        return nullptr;
    return std::unique_ptr<ScriptProcess>(new ScriptProcess(process, std::move(reading)));
}

ScriptProcess::ScriptProcess(pid_t process, Descriptor output)
    : process_(process), output_(std::move(output)) {}

ScriptProcess::~ScriptProcess() {
    kill(process_, SIGKILL);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
}

QString ScriptProcess::defaultProgram() {
    static const QString program = [] {
        const QString folder = QFileInfo(QFile::symLinkTarget(u"/proc/self/exe"_s)).path();
        const QString beside = folder + u"/orlop-proxy-script"_s;
        return QFileInfo::exists(beside) ? beside
                                         : folder + u"/../libexec/orlop/orlop-proxy-script"_s;
    }();
    return program;
}

}  // namespace platform
