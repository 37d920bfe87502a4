#pragma once

#include <functional>
#include <optional>

#include "app/authentication/authentication_prompt.h"
#include "app/terminal/prompt.h"
#include "platform/base/timer.h"

namespace app::terminal {

/// Asks whoever sits at the terminal for a name and a password; the password is not shown. An
/// empty name, or the end of input, is no answer.
class TerminalAuthentication final : public AuthenticationPrompt {
public:
    /// `willAsk` makes what shows progress leave the terminal alone, `didAsk` lets it have it back.
    struct Surroundings {
        Prompt& prompt;
        std::function<void()> willAsk, didAsk;
    };

    explicit TerminalAuthentication(Surroundings surroundings)
        : surroundings_(std::move(surroundings)) {}

    [[nodiscard]] bool isVisible() const override { return client_ != nullptr; }
    [[nodiscard]] bool show(const AuthenticationQuestion& question, Client& client) override;
    void close() override;

private:
    void askLater(platform::Seconds delay);
    void ask();
    [[nodiscard]] std::optional<AuthenticationAnswer> answer();

    Surroundings surroundings_;
    AuthenticationQuestion question_;
    QString answeredHost_;      ///< Of the last question, if it was answered.
    Client* client_ = nullptr;  ///< Null: nothing is asked.
    /// There is no loop yet when this is made; nothing is asked any more when it ends.
    std::optional<platform::Timer> later_;
    bool isAsking_ = false;
    int shown_ = 0;  ///< Counts questions, so that an answer to one is not taken for another's.
};

}  // namespace app::terminal
