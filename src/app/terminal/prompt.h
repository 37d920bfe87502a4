#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "app/terminal/terminal_output.h"

namespace app::terminal {

/// Asks for a line of text. Main thread.
class Prompt {
public:
    virtual ~Prompt() = default;

    /// Whether somebody is there to answer.
    [[nodiscard]] virtual bool isAvailable() const = 0;
    /// Returns with the answer while the event loop goes on. Nothing: there will be none.
    [[nodiscard]] virtual std::optional<QString> ask(const QString& question) = 0;
    /// A question that waits for its answer gets none.
    virtual void cancel() = 0;
};

/// The terminal that the program was started from, even when standard input is a list.
class TerminalPrompt final : public Prompt {
public:
    explicit TerminalPrompt(Output& output);
    ~TerminalPrompt() override;
    TerminalPrompt(const TerminalPrompt&) = delete;
    TerminalPrompt& operator=(const TerminalPrompt&) = delete;

    [[nodiscard]] bool isAvailable() const override;
    [[nodiscard]] std::optional<QString> ask(const QString& question) override;
    void cancel() override;

private:
    Output& output_;
    int descriptor_;
    std::function<void()> endWaiting_;
};

}  // namespace app::terminal
