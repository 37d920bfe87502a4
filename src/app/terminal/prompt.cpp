#include "app/terminal/prompt.h"

#include <fcntl.h>
#include <unistd.h>

#include <QEventLoop>
#include <QSocketNotifier>
#include <array>

namespace app::terminal {

TerminalPrompt::TerminalPrompt(Output& output)
    : output_(output), descriptor_(::open("/dev/tty", O_RDONLY | O_CLOEXEC | O_NOCTTY)) {}

TerminalPrompt::~TerminalPrompt() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

bool TerminalPrompt::isAvailable() const {
    // Reading as another job than the one in the foreground would stop the whole program.
    return descriptor_ >= 0 && output_.isInForeground();
}

std::optional<QString> TerminalPrompt::ask(const QString& question) {
    output_.write(question.toUtf8());
    std::optional<QString> answer;
    QEventLoop loop;
    QSocketNotifier notifier(descriptor_, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &loop, [this, &answer, &loop] {
        // A terminal hands over one line at a time; one longer than this is no answer to anything.
        std::array<char, 1024> line{};
        const auto count = ::read(descriptor_, line.data(), line.size());
        if (count > 0)
            answer = QString::fromUtf8(line.data(), count).trimmed();
        loop.quit();
    });
    endWaiting_ = [&loop] { loop.quit(); };
    loop.exec();
    endWaiting_ = nullptr;
    return answer;
}

void TerminalPrompt::cancel() {
    if (endWaiting_)
        endWaiting_();
}

}  // namespace app::terminal
