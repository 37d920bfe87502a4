#pragma once

#include <functional>

#include "app/front_end.h"
#include "app/terminal/prompt.h"
#include "app/terminal/reporter.h"

namespace app::terminal {

/// Puts the program's questions to whoever sits at the terminal. Where nobody does, gives the
/// answer that does the least; only quitting, which comes from a signal and saves everything, is
/// always agreed to.
class TerminalQuestions final : public Questions {
public:
    /// What shows progress is released for a question; `didEnd` is called behind it.
    TerminalQuestions(Prompt& prompt, Reporter& reporter, std::function<void()> didEnd);

    bool confirm(const Alert& alert) override;
    [[nodiscard]] bool asksAboutSeries() const override { return false; }
    [[nodiscard]] bool canAsk() const override { return prompt_.isAvailable(); }
    void dismissAlert() override { prompt_.cancel(); }
    std::optional<QString> chooseAbbreviatedDownloadFileForURL(const platform::Url& url) override;
    std::optional<QString> chooseAbbreviatedDownloadsFolder() override { return {}; }

    [[nodiscard]] bool isAsking() const { return isAsking_; }

private:
    Prompt& prompt_;
    Reporter& reporter_;
    std::function<void()> didEnd_;
    bool isAsking_ = false;
};

}  // namespace app::terminal
