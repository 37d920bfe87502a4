#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "app/terminal/terminal_output.h"

namespace app::terminal {

/// Asks for a line of text. Main thread.
class Prompt {
public:
    /// Off: what is typed is not shown, and comes as it was typed, blanks at its ends included.
    enum class Echo { On, Off };

    virtual ~Prompt() = default;

    /// Whether there is anybody who could ever answer.
    [[nodiscard]] virtual bool exists() const = 0;
    /// Whether somebody can answer now, and is not answering another question.
    [[nodiscard]] virtual bool isAvailable() const = 0;
    /// Returns with the answer while the event loop goes on. Nothing: there will be none.
    [[nodiscard]] virtual std::optional<QString> ask(const QString& question,
                                                     Echo echo = Echo::On) = 0;
    /// A question that waits for its answer gets none.
    virtual void cancel() = 0;
};

/// The terminal that the program was started from, even when standard input is a list and standard
/// output a file.
class TerminalPrompt final : public Prompt {
public:
    TerminalPrompt();
    ~TerminalPrompt() override;
    TerminalPrompt(const TerminalPrompt&) = delete;
    TerminalPrompt& operator=(const TerminalPrompt&) = delete;

    [[nodiscard]] bool exists() const override { return descriptor_ >= 0; }
    [[nodiscard]] bool isAvailable() const override;
    [[nodiscard]] std::optional<QString> ask(const QString& question, Echo echo) override;
    void cancel() override;

    [[nodiscard]] bool isAsking() const { return endWaiting_ != nullptr; }
    /// The program is about to be stopped: the terminal shows again what is typed.
    void suspend();
    /// It goes on: a question that waits is put again.
    void resume();

private:
    [[nodiscard]] std::optional<QString> readLine(Echo echo) const;
    void put();

    int descriptor_;  ///< -1: there is no terminal.
    DescriptorOutput terminal_;
    std::function<void()> endWaiting_;
    /// Of the question that waits.
    QString question_;
    Echo echo_ = Echo::On;
};

}  // namespace app::terminal
