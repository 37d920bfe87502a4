#pragma once

#include <QByteArrayView>
#include <QProcessEnvironment>

#include "app/terminal/cells.h"
#include "app/terminal/progress_layout.h"

namespace app::terminal {

/// How an output is to be written to.
struct OutputMode {
    /// Lines that change in place; else one line an event.
    bool isLive = false;
    bool inColour = false;
    Glyphs glyphs = Glyphs::Unicode;
};

/// Decides by what the output is and by the environment: TERM that is absent, empty or "dumb"
/// cannot move its cursor; NO_COLOR with any value but an empty one turns colours off
/// (no-color.org); the character set is the first of LC_ALL, LC_CTYPE and LANG that is set. What
/// is no terminal always takes UTF-8.
[[nodiscard]] OutputMode outputMode(bool isTerminal, const QProcessEnvironment& environment);

/// Where text goes. Main thread.
class Output {
public:
    virtual ~Output() = default;

    virtual void write(QByteArrayView bytes) = 0;
    /// Whether a write would go through without waiting for a reader that has stopped.
    [[nodiscard]] virtual bool isReady() const = 0;
    /// Whether the terminal is this program's to draw on rather than another job's.
    [[nodiscard]] virtual bool isInForeground() const = 0;
    [[nodiscard]] virtual Size size() const = 0;
};

/// An open file descriptor; a terminal or not. Writing goes on after interruptions and gives up
/// on errors: a reader that has gone away must not stop downloads.
class DescriptorOutput final : public Output {
public:
    explicit DescriptorOutput(int descriptor) : descriptor_(descriptor) {}

    void write(QByteArrayView bytes) override;
    [[nodiscard]] bool isReady() const override;
    [[nodiscard]] bool isInForeground() const override;
    /// 80 by 24 where the terminal does not know.
    [[nodiscard]] Size size() const override;
    [[nodiscard]] bool isTerminal() const;

private:
    int descriptor_;
};

}  // namespace app::terminal
