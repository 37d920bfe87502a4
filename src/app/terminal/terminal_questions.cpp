#include "app/terminal/terminal_questions.h"

#include "links/text/localization.h"

namespace app::terminal {
namespace {

using namespace Qt::Literals::StringLiterals;
using links::localized;

QString translated(const QString& text) {
    return localized(text.toUtf8().constData());
}

struct Choice {
    QString defaultButton, otherButton;
    bool isRisky = false;

    /// Any beginning of a button's name stands for it, and an empty line for the default one, or
    /// the other if that is risky. Nothing: neither.
    [[nodiscard]] std::optional<bool> meant(const QString& answer) const {
        if (answer.isEmpty())
            return !isRisky;
        if (defaultButton.startsWith(answer, Qt::CaseInsensitive))
            return true;
        if (otherButton.startsWith(answer, Qt::CaseInsensitive))
            return false;
        return {};
    }
};

}  // namespace

TerminalQuestions::TerminalQuestions(Prompt& prompt, Reporter& reporter,
                                     std::function<void()> didEnd)
    : prompt_(prompt), reporter_(reporter), didEnd_(std::move(didEnd)) {}

bool TerminalQuestions::confirm(const Alert& alert) {
    if (alert.kind == Alert::Kind::QuitWhileDownloading)
        return true;
    if (alert.kind == Alert::Kind::LargeSeries)
        return false;
    if (isAsking_ || !prompt_.isAvailable())
        return false;
    const Choice choice{translated(alert.defaultButton), translated(alert.otherButton),
                        alert.isRisky};
    const QString question = u"%1\n%2 [%3/%4] "_s.arg(
        translated(alert.title), translated(alert.text), choice.defaultButton, choice.otherButton);
    reporter_.release();
    isAsking_ = true;
    std::optional<bool> decision;
    while (!decision) {
        const auto answer = prompt_.ask(question);
        decision = answer ? choice.meant(*answer) : false;
    }
    isAsking_ = false;
    didEnd_();
    return *decision;
}

std::optional<QString> TerminalQuestions::chooseAbbreviatedDownloadFileForURL(
    const platform::Url& url) {
    static_cast<void>(url);
    return {};
}

}  // namespace app::terminal
