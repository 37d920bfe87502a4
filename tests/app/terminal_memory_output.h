#pragma once

#include <QByteArray>
#include <string>

#include "app/terminal/terminal_output.h"
#include "app/terminal_emulator.h"

namespace tests {

/// An output that a test looks into.
class MemoryOutput final : public app::terminal::Output {
public:
    void write(QByteArrayView bytes) override { written.append(bytes); }
    [[nodiscard]] bool isReady() const override { return ready; }
    [[nodiscard]] bool isInForeground() const override { return foreground; }
    [[nodiscard]] app::terminal::Size size() const override { return window; }

    /// What a terminal of that size would show.
    [[nodiscard]] std::string screen() const {
        TerminalEmulator terminal(window.columns, window.lines);
        terminal.feed(written);
        return terminal.screen().join(u'\n').toStdString();
    }

    QByteArray written;
    bool ready = true;
    bool foreground = true;
    app::terminal::Size window{40, 10};
};

}  // namespace tests
