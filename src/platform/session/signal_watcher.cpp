#include "platform/session/signal_watcher.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>

namespace platform {
namespace {

std::atomic<int> wakeDescriptor{-1};

void noteSignal(int number) {
    const int savedError = errno;
    const auto byte = static_cast<unsigned char>(number);
    // A full pipe already holds a wake-up for every signal that could matter.
    [[maybe_unused]] const auto written = ::write(wakeDescriptor.load(), &byte, 1);
    errno = savedError;
}

}  // namespace

class SignalWatcher::Private {
public:
    Private(const std::vector<WatchedSignal>& watched, Handler handler)
        : handler_(std::move(handler)) {
        if (::pipe2(pipe_.data(), O_CLOEXEC | O_NONBLOCK) != 0)
            return;
        wakeDescriptor = pipe_[1];
        notifier_ = std::make_unique<QSocketNotifier>(pipe_[0], QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                         [this] { tellAll(); });
        for (const WatchedSignal& signal : watched)
            watch(signal);
    }

    ~Private() {
        for (const Former& former : former_)
            ::sigaction(former.number, &former.action, nullptr);
        notifier_.reset();
        wakeDescriptor = -1;
        for (const int descriptor : pipe_)
            if (descriptor >= 0)
                ::close(descriptor);
    }

    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

private:
    struct Former {
        int number;
        struct sigaction action;
    };

    void watch(const WatchedSignal& signal) {
        Former former{signal.number, {}};
        ::sigaction(signal.number, nullptr, &former.action);
        // Whoever started us with a signal ignored (nohup, a shell's background job) means it.
        if (former.action.sa_handler == SIG_IGN)
            return;
        struct sigaction action = {};
        action.sa_handler = noteSignal;
        action.sa_flags =
            SA_RESTART | (signal.defaultOnRepeat ? static_cast<int>(SA_RESETHAND) : 0);
        ::sigfillset(&action.sa_mask);
        if (::sigaction(signal.number, &action, nullptr) == 0)
            former_.push_back(former);
    }

    void tellAll() {
        std::array<unsigned char, 64> numbers{};
        const auto count = ::read(pipe_[0], numbers.data(), numbers.size());
        for (ssize_t i = 0; i < count; ++i)
            handler_(numbers[static_cast<std::size_t>(i)]);
    }

    Handler handler_;
    std::array<int, 2> pipe_{-1, -1};
    std::unique_ptr<QSocketNotifier> notifier_;
    std::vector<Former> former_;
};

SignalWatcher::SignalWatcher(const std::vector<WatchedSignal>& watched, Handler handler)
    : private_(std::make_unique<Private>(watched, std::move(handler))) {}

SignalWatcher::~SignalWatcher() = default;

void endBySignal(int number) {
    std::signal(number, SIG_DFL);
    std::raise(number);
    std::_Exit(128 + number);
}

void stopProcess() {
    ::raise(SIGSTOP);
}

void letWritesFail() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace platform
