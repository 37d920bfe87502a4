#include "app/terminal/program.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QFile>
#include <csignal>
#include <memory>
#include <utility>

#include "app/application.h"
#include "app/intake/address_list.h"
#include "app/lifecycle/command_line.h"
#include "app/main_controller.h"
#include "app/terminal/opened_items.h"
#include "app/terminal/prompt.h"
#include "app/terminal/session.h"
#include "app/terminal/terminal_authentication.h"
#include "app/terminal/terminal_presence.h"
#include "app/terminal/terminal_questions.h"
#include "app/terminal/usage.h"
#include "links/settings.h"
#include "links/text/localization.h"
#include "platform/base/run_loop.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"
#include "platform/session/signal_watcher.h"

namespace app::terminal {
namespace {

using namespace Qt::Literals::StringLiterals;
using links::localized;

constexpr int statusFailed = 1;
constexpr int statusBadUsage = 2;
constexpr qint64 longestList = 64 << 20;

/// The two outputs and what is shown on them.
class Display {
public:
    explicit Display(const QProcessEnvironment& environment) {
        const OutputMode mode = outputMode(output.isTerminal(), environment);
        if (mode.isLive)
            reporter = std::make_unique<LiveReporter>(output, mode);
        else
            reporter = std::make_unique<PlainReporter>(output, errors, mode.glyphs);
    }

    void tellProblem(const QString& text) const {
        reporter->tell({Event::Kind::Problem, text, {}});
    }

    DescriptorOutput output{STDOUT_FILENO};
    DescriptorOutput errors{STDERR_FILENO};
    std::unique_ptr<Reporter> reporter;
};

QString listOnStandardInput() {
    QFile input;
    if (!input.open(STDIN_FILENO, QIODevice::ReadOnly))
        return {};
    return addressListText(input.read(longestList));
}

/// Words are told apart before the core starts, by what will hold for it.
bool skipsRedirectingServices(const CommandLine& line) {
    platform::UserDefaults defaults(platform::userConfigFolder(), platform::defaultsDomain);
    defaults.setArguments(line.settings);
    return defaults.get(links::settings::skipRedirectingServices);
}

/// The core with a terminal for its front end, from its start to its end.
class Run {
public:
    Run(const CommandLine& line, QStringList items, Display& display, const Accompany& accompany)
        : line_(line),
          display_(display),
          accompany_(accompany),
          application_({line.settings, std::move(items)}) {}

    [[nodiscard]] ProgramEnd toTheEnd() {
        const FrontEnd frontEnd{questions_, feedback_, presence_,
                                listView_,  nullptr,   &authentication_};
        const Application::Start start = application_.start(
            frontEnd, [this](DQMainController& controller) { listenTo(controller); });
        if (!start.problem.isEmpty())
            display_.tellProblem(start.problem);
        if (start.outcome == Application::Start::Outcome::Failed)
            return {statusFailed};
        if (start.outcome == Application::Start::Outcome::HandedOver) {
            display_.reporter->tell({Event::Kind::Notice,
                                     localized("Handed over to Orlop, which is running already."),
                                     {}});
            return {};
        }
        if (line_.items.isEmpty())
            tellIfIdle();
        session_->begin();
        const platform::SignalWatcher watcher(watchedSignals(),
                                              [this](int number) { handleSignal(number); });
        if (!isOver_)
            QCoreApplication::exec();
        display_.reporter->release();
        end_.status = session_->hasFailures() ? statusFailed : 0;
        session_.reset();
        companion_.reset();
        end_.mustNotWait = !application_.stop();
        return end_;
    }

private:
    static std::vector<platform::WatchedSignal> watchedSignals() {
        return {{SIGINT, true}, {SIGTERM}, {SIGHUP}, {SIGWINCH}, {SIGTSTP}, {SIGCONT}};
    }

    void listenTo(DQMainController& controller) {
        companion_ = accompany_(application_);
        const platform::UserDefaults& defaults = platform::standardDefaults();
        session_ =
            std::make_unique<Session>(Session::Surroundings{controller, *display_.reporter,
                                                            platform::mainRunLoop(), defaults},
                                      [&controller] { controller.terminate(); });
        QObject::connect(
            &controller, &DQMainController::queueFileNotWritten, session_.get(),
            [this](const QString& reason) {
                display_.tellProblem(localized("The queue cannot be saved: %1").arg(reason));
            });
        QObject::connect(&controller, &DQMainController::queueNotSavedAtQuit, session_.get(),
                         [this](const QString& problem) { display_.tellProblem(problem); });
        QObject::connect(&controller, &DQMainController::terminated, session_.get(), [this] {
            isOver_ = true;
            QCoreApplication::exit();
        });
    }

    /// A run that was given nothing, and finds nothing to go on with, would end without a word.
    void tellIfIdle() {
        const DQMainController& controller = application_.controller();
        if (controller.anyDownloadMatchesStatusMask(engine::activeStatuses))
            return;
        const qsizetype paused = controller.numberOfDownloads();
        const QString text =
            paused == 0 ? localized("Nothing to do; orlop-terminal --help says what it takes.")
                        : localized(
                              "Nothing to do: what is in the queue (%1) is paused. To go on "
                              "with a download, give its address.")
                              .arg(paused);
        display_.reporter->tell({Event::Kind::Notice, text, {}});
    }

    void handleSignal(int number) {
        switch (number) {
            case SIGWINCH:
                if (!prompt_.isAsking())
                    session_->resume();
                return;
            case SIGTSTP:
                session_->suspend();
                prompt_.suspend();
                platform::stopProcess();
                return;
            case SIGCONT:
                goOn();
                return;
            default:
                interrupt(number);
        }
    }

    void goOn() {
        if (prompt_.isAsking())
            prompt_.resume();
        else
            session_->resume();
    }

    void interrupt(int number) {
        if (end_.signal != 0)
            return;
        end_.signal = number;
        authentication_.close();
        questions_.dismissAlert();
        session_->suspend();
        application_.controller().stopIntake();
        display_.reporter->tell({Event::Kind::Notice,
                                 localized("Paused. The next run of orlop-terminal goes on."),
                                 {}});
        // Not from within a question that is only just being taken away.
        platform::mainRunLoop().post([this] { application_.controller().terminate(); });
    }

    const CommandLine& line_;
    Display& display_;
    const Accompany& accompany_;
    ProgramEnd end_;
    bool isOver_ = false;  ///< Perhaps while the start asks something, in a loop of its own.
    TerminalPrompt prompt_;
    TerminalQuestions questions_{prompt_, *display_.reporter, [this] {
                                     if (session_ && end_.signal == 0)
                                         session_->resume();
                                 }};
    TerminalAuthentication authentication_{{prompt_, [this] { session_->suspend(); },
                                            [this] {
                                                if (end_.signal == 0)
                                                    session_->resume();
                                            }}};
    TerminalFeedback feedback_;
    TerminalPresence presence_{[this] { return questions_.isAsking(); }};
    TerminalListView listView_{[this] {
        if (session_)
            session_->requestRefresh();
    }};
    Application application_;
    std::unique_ptr<Session> session_;
    std::shared_ptr<void> companion_;
};

}  // namespace

ProgramEnd runProgram(const QStringList& arguments, const QProcessEnvironment& environment,
                      const Accompany& accompany) {
    Display display(environment);
    const CommandLine line = parsedCommandLine(arguments);
    if (line.action == CommandLine::Action::ShowHelp) {
        display.output.write(usageText().toUtf8());
        return {};
    }
    if (line.action == CommandLine::Action::ShowVersion) {
        display.output.write("orlop-terminal " ORLOP_VERSION "\n");
        return {};
    }
    const QString ofWindow = line.isInBackground ? u"background"_s : line.programAction;
    if (!line.problem.isEmpty() || !ofWindow.isEmpty()) {
        display.tellProblem(ofWindow.isEmpty()
                                ? line.problem
                                : localized("unknown option: %1").arg(u"--"_s + ofWindow));
        return {statusBadUsage};
    }
    OpenedItems opened =
        openedItems(line.items, line.items.contains(u"-"_s) ? listOnStandardInput() : QString(),
                    skipsRedirectingServices(line));
    for (const QString& refusal : opened.refusals)
        display.tellProblem(refusal);
    if (!opened.refusals.isEmpty())
        return {statusBadUsage};
    return Run(line, std::move(opened.items), display, accompany).toTheEnd();
}

}  // namespace app::terminal
