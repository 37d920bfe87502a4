#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <string>
#include <vector>

#include "app/terminal/terminal_output.h"

namespace tests {

/// A terminal of the plainest kind: enough of ECMA-48 to see what a program's output leaves on
/// the screen. One character takes one cell. An unknown sequence ends up visible in
/// `complaints`.
class TerminalEmulator {
public:
    TerminalEmulator(int columns, int lines) : columns_(columns), lines_(lines) { addLine(); }

    void feed(QByteArrayView bytes);

    /// What stands on the screen, without trailing blanks and trailing empty lines.
    [[nodiscard]] QStringList screen() const;
    /// The same, with what has scrolled off above.
    [[nodiscard]] QStringList everything() const;
    [[nodiscard]] const QStringList& complaints() const { return complaints_; }
    /// Column and line on the screen, from 0.
    [[nodiscard]] int cursorColumn() const { return column_; }
    [[nodiscard]] int cursorLine() const { return static_cast<int>(line_ - firstVisible()); }

private:
    void addLine() { text_.push_back(QString(columns_, u' ')); }
    [[nodiscard]] std::size_t firstVisible() const;
    void lineFeed();
    void put(QChar character);
    void control(const QByteArray& parameters, char final);
    void clearFromCursor(bool toScreenEnd);

    int columns_, lines_;
    int column_ = 0;
    std::size_t line_ = 0;
    bool wraps_ = true;
    std::vector<QString> text_;
    QStringList complaints_;
};

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
