#include "app/terminal/terminal_output.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

namespace app::terminal {
namespace {

using namespace Qt::Literals::StringLiterals;

bool takesUtf8(const QProcessEnvironment& environment) {
    for (const QString& name : {u"LC_ALL"_s, u"LC_CTYPE"_s, u"LANG"_s}) {
        const QString value = environment.value(name);
        if (value.isEmpty())
            continue;
        const QString set = value.section(u'.', 1).section(u'@', 0, 0).toLower();
        return set == u"utf-8"_s || set == u"utf8"_s;
    }
    return false;
}

}  // namespace

OutputMode outputMode(bool isTerminal, const QProcessEnvironment& environment) {
    if (!isTerminal)
        return {};
    const QString kind = environment.value(u"TERM"_s);
    OutputMode mode;
    mode.isLive = !kind.isEmpty() && kind != u"dumb"_s;
    mode.inColour = mode.isLive && environment.value(u"NO_COLOR"_s).isEmpty();
    mode.glyphs = takesUtf8(environment) ? Glyphs::Unicode : Glyphs::Ascii;
    return mode;
}

void DescriptorOutput::write(QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const auto written = ::write(descriptor_, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written < 0 && errno == EAGAIN) {
            pollfd writable{descriptor_, POLLOUT, 0};
            ::poll(&writable, 1, -1);
            continue;
        }
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        bytes = bytes.sliced(written);
    }
}

bool DescriptorOutput::isReady() const {
    pollfd writable{descriptor_, POLLOUT, 0};
    return ::poll(&writable, 1, 0) == 1 && (writable.revents & POLLOUT) != 0;
}

bool DescriptorOutput::isInForeground() const {
    // A terminal that is not the controlling one (as under nohup or in a test) has no jobs to
    // share.
    const pid_t foreground = ::tcgetpgrp(descriptor_);
    return foreground < 0 || foreground == ::getpgrp();
}

Size DescriptorOutput::size() const {
    winsize window{};
    Size size;
    if (::ioctl(descriptor_, TIOCGWINSZ, &window) != 0)
        return size;
    if (window.ws_col > 0)
        size.columns = window.ws_col;
    if (window.ws_row > 0)
        size.lines = window.ws_row;
    return size;
}

bool DescriptorOutput::isTerminal() const {
    return ::isatty(descriptor_) == 1;
}

}  // namespace app::terminal
