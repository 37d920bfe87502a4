#include "app/terminal/terminal_authentication.h"

#include "links/text/localization.h"

namespace app::terminal {

using namespace Qt::Literals::StringLiterals;
using links::localized;

namespace {

/// How long another question may go on before this one tries again.
constexpr platform::Seconds pauseForOthers = 0.5;
/// How long a question waits after an answer for the same server, which may serve it, too.
constexpr platform::Seconds pauseForFollowers = 0.5;

}  // namespace

bool TerminalAuthentication::show(const AuthenticationQuestion& question, Client& client) {
    if (!surroundings_.prompt.exists())
        return false;
    question_ = question;
    client_ = &client;
    ++shown_;
    if (isAsking_)
        surroundings_.prompt.cancel();
    else
        askLater(question.host == answeredHost_ ? pauseForFollowers : 0);
    return true;
}

void TerminalAuthentication::close() {
    client_ = nullptr;
    ++shown_;
    later_.reset();
    if (isAsking_)
        surroundings_.prompt.cancel();
}

void TerminalAuthentication::askLater(platform::Seconds delay) {
    later_.emplace(platform::mainRunLoop()).start(delay, [this] { ask(); });
}

void TerminalAuthentication::ask() {
    if (client_ == nullptr)
        return;
    if (!surroundings_.prompt.isAvailable())
        return askLater(pauseForOthers);
    const int asked = shown_;
    isAsking_ = true;
    surroundings_.willAsk();
    const auto given = answer();
    isAsking_ = false;
    surroundings_.didAsk();
    if (client_ == nullptr)
        return;
    if (shown_ != asked)
        return askLater(0);
    answeredHost_ = given ? question_.host : QString();
    if (given)
        client_->applyCredentialsFromDialog(*given);
    else
        client_->cancelDialog();
}

/// Nothing: none is given, or the question is another one by now.
std::optional<AuthenticationAnswer> TerminalAuthentication::answer() {
    Prompt& prompt = surroundings_.prompt;
    const int asked = shown_;
    const QString asking = question_.isForProxy ? localized("Proxy: %1") : localized("Server: %1");
    AuthenticationAnswer answer;
    answer.storesPassword = question_.storesPassword;
    const auto name =
        prompt.ask(question_.explanation + u'\n' + asking.arg(question_.host) + u". "_s +
                   question_.securityInfo + u'\n' + localized("Name:") + u' ');
    if (!name || name->isEmpty() || shown_ != asked)
        return std::nullopt;
    answer.name = *name;
    const auto password = prompt.ask(localized("Password:") + u' ', Prompt::Echo::Off);
    if (!password || shown_ != asked)
        return std::nullopt;
    answer.password = *password;
    if (!question_.needsDomain)
        return answer;
    const auto domain = prompt.ask(localized("Domain:") + u' ');
    if (!domain || shown_ != asked)
        return std::nullopt;
    answer.domain = *domain;
    return answer;
}

}  // namespace app::terminal
