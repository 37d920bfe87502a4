#include "app/terminal/prompt.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <QEventLoop>
#include <QSocketNotifier>
#include <array>

namespace app::terminal {
namespace {

/// Nothing that was typed ahead is taken for a password, and nothing of one is shown afterwards.
void setEcho(int descriptor, Prompt::Echo echo) {
    termios state{};
    if (::tcgetattr(descriptor, &state) != 0)
        return;
    const bool isOn = echo == Prompt::Echo::On;
    if (isOn == ((state.c_lflag & ECHO) != 0))
        return;
    state.c_lflag ^= static_cast<tcflag_t>(ECHO);
    // The line's end is shown, so that what follows begins on a line of its own.
    state.c_lflag |= static_cast<tcflag_t>(ECHONL);
    if (isOn)
        state.c_lflag &= ~static_cast<tcflag_t>(ECHONL);
    ::tcsetattr(descriptor, TCSAFLUSH, &state);
}

}  // namespace

TerminalPrompt::TerminalPrompt()
    : descriptor_(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY)), terminal_(descriptor_) {}

TerminalPrompt::~TerminalPrompt() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

bool TerminalPrompt::isAvailable() const {
    // Reading as another job than the one in the foreground would stop the whole program.
    return descriptor_ >= 0 && !endWaiting_ && terminal_.isInForeground();
}

std::optional<QString> TerminalPrompt::ask(const QString& question, Echo echo) {
    std::optional<QString> answer;
    QEventLoop loop;
    QSocketNotifier notifier(descriptor_, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &loop, [this, &answer, &loop, echo] {
        answer = readLine(echo);
        loop.quit();
    });
    endWaiting_ = [&loop] { loop.quit(); };
    question_ = question;
    echo_ = echo;
    put();
    loop.exec();
    endWaiting_ = nullptr;
    setEcho(descriptor_, Echo::On);
    if (!answer)
        terminal_.write("\n");
    return answer;
}

std::optional<QString> TerminalPrompt::readLine(Echo echo) const {
    // A terminal hands over one line at a time; one longer than this is no answer to anything.
    std::array<char, 1024> line{};
    const auto count = ::read(descriptor_, line.data(), line.size());
    if (count <= 0)
        return std::nullopt;
    const QString text = QString::fromUtf8(line.data(), count);
    line.fill(0);
    if (echo == Echo::On)
        return text.trimmed();
    return text.endsWith(u'\n') ? text.chopped(1) : text;
}

void TerminalPrompt::put() {
    setEcho(descriptor_, echo_);
    terminal_.write(question_.toUtf8());
}

void TerminalPrompt::cancel() {
    if (endWaiting_)
        endWaiting_();
}

void TerminalPrompt::suspend() {
    if (endWaiting_)
        setEcho(descriptor_, Echo::On);
}

void TerminalPrompt::resume() {
    if (endWaiting_ && terminal_.isInForeground())
        put();
}

}  // namespace app::terminal
