#include "diagnostics/child_output.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QFile>
#include <array>
#include <cerrno>
#include <optional>
#include <utility>
#include <vector>

namespace diagnostics {

namespace {

using platform::Descriptor;

/// What posix_spawn is to do in the new process: nothing of ours is handed on but the output.
class SpawnPlan {
public:
    explicit SpawnPlan(int output) {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
        posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        sigaddset(&signals, SIGPIPE);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    /// Nothing: it cannot be started.
    std::optional<pid_t> run(const QString& program, const QStringList& arguments) {
        std::vector<QByteArray> words{QFile::encodeName(program)};
        for (const QString& argument : arguments)
            words.push_back(argument.toLocal8Bit());
        std::vector<char*> pointers;
        pointers.reserve(words.size() + 1);
        for (QByteArray& word : words)
            pointers.push_back(word.data());
        pointers.push_back(nullptr);
        pid_t process = 0;
        if (posix_spawn(&process, pointers[0], &actions_, &attributes_, pointers.data(), environ) !=
            0)
            return std::nullopt;
        return process;
    }

private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

}  // namespace

std::unique_ptr<ChildOutput> ChildOutput::start(const QString& program,
                                                const QStringList& arguments, Take take) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return nullptr;
    Descriptor reading(ends[0]);
    const Descriptor writing(ends[1]);
    constexpr int roomyPipe = 1 << 20;
    fcntl(writing.get(), F_SETPIPE_SZ, roomyPipe);
    const auto process = SpawnPlan(writing.get()).run(program, arguments);
    if (!process)
        return nullptr;
    return std::unique_ptr<ChildOutput>(
        new ChildOutput(*process, std::move(reading), std::move(take)));
}

ChildOutput::ChildOutput(pid_t process, Descriptor output, Take take)
    : process_(process),
      output_(std::move(output)),
      stop_(eventfd(0, EFD_CLOEXEC)),
      take_(std::move(take)),
      thread_([this] { run(); }) {}

ChildOutput::~ChildOutput() {
    terminate();
}

void ChildOutput::terminate() {
    eventfd_write(stop_.get(), 1);
    wait();
}

void ChildOutput::wait() {
    if (thread_.joinable())
        thread_.join();
}

void ChildOutput::run() {
    std::vector<char> bytes(1 << 20);
    std::array<pollfd, 2> watched{{{output_.get(), POLLIN, 0}, {stop_.get(), POLLIN, 0}}};
    for (;;) {
        if (poll(watched.data(), watched.size(), -1) < 0 && errno == EINTR)
            continue;
        if (watched[1].revents != 0)
            break;
        const ssize_t count = read(output_.get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0 || !take_(QByteArrayView(bytes.data(), count)))
            break;
    }
    kill(process_, SIGTERM);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
    isRunning_ = false;
}

}  // namespace diagnostics
