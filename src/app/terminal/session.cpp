#include "app/terminal/session.h"

#include <algorithm>

#include "app/main_controller.h"
#include "app/rows/rows.h"
#include "app/status/queue_status.h"
#include "app/terminal/progress_rows.h"
#include "engine/record/status.h"
#include "engine/settings.h"
#include "links/text/localization.h"
#include "platform/base/user_defaults.h"

namespace app::terminal {
namespace {

RunLedger::State stateOf(const engine::DQDownload& download) {
    switch (download.status()) {
        case engine::DQDownloadStatusDownloading:
            return RunLedger::State::Running;
        case engine::DQDownloadStatusDone:
            return RunLedger::State::Done;
        case engine::DQDownloadStatusAborted:
            return download.isBeingRemoved() ? RunLedger::State::Waiting : RunLedger::State::Failed;
        case engine::DQDownloadStatusPaused:
            return download.isInterrupted() && !download.hasFailedBefore()
                       ? RunLedger::State::Failed
                       : RunLedger::State::Waiting;
        case engine::DQDownloadStatusQueued:
            break;
    }
    return RunLedger::State::Waiting;
}

}  // namespace

Session::Session(Surroundings surroundings, std::function<void()> didEnd)
    : surroundings_(surroundings),
      didEnd_(std::move(didEnd)),
      refresh_(surroundings.loop, [this] { return draw(); }),
      look_(surroundings.loop) {
    DQMainController& controller = surroundings_.controller;
    connect(&controller, &DQMainController::downloadChanged, this,
            [this](const engine::DownloadPtr& download) { noteChange(download); });
    connect(&controller, &DQMainController::downloadEnded, this,
            [this](const engine::DownloadPtr& download) { noteChange(download); });
    connect(&controller, &DQMainController::statusChanged, this, [this] {
        requestRefresh();
        lookForEndSoon();
    });
    connect(&controller, &DQMainController::filesNotOpened, this,
            [this](const QStringList& problems) { tellProblems(problems); });
    connect(&controller, &DQMainController::volumeMissing, this,
            [this](const QString& sentence) { tellProblems({sentence}); });
    connect(&controller, &DQMainController::machineRefused, this,
            [this](const QString& sentence) { tellProblems({sentence}); });
    connect(&controller, &DQMainController::alreadyInList, this,
            [this](const Downloads& known) { takeUpAgain(known); });
    connect(&controller, &DQMainController::textNotUnderstood, this,
            [this](const std::vector<RefusedText>& refused) {
                QStringList lines;
                for (const RefusedText& text : refused)
                    lines.append(refusalLine(text));
                tellProblems(lines);
            });
}

void Session::begin() {
    hasBegun_ = true;
    requestRefresh();
    lookForEndSoon();
}

void Session::takeUpAgain(const Downloads& known) {
    for (const engine::DownloadPtr& download : known) {
        surroundings_.reporter.tell(
            {Event::Kind::Notice,
             links::localized("Already in the list: %1").arg(download->displayName()),
             {}});
        if (download->status() == engine::DQDownloadStatusPaused)
            download->addToQueue();
    }
}

void Session::noteChange(const engine::DownloadPtr& download) {
    const RunLedger::State state = stateOf(*download);
    if (const auto news = ledger_.note(download, state))
        tell(*news, *download);
    noteWait(*download, state);
    if (state == RunLedger::State::Failed)
        lastFailure_ = surroundings_.loop.clock().monotonic();
    requestRefresh();
}

/// Where no progress is shown, a line says why it does not come along.
void Session::noteWait(engine::DQDownload& download, RunLedger::State state) {
    if (state != RunLedger::State::Waiting || !download.wasRefused() ||
        surroundings_.reporter.showsProgress())
        return;
    const QString wait = surroundings_.controller.rows().texts().hostWaitDescription(download);
    if (!wait.isEmpty())
        surroundings_.reporter.tell({Event::Kind::Notice, download.displayName(), wait});
}

void Session::tell(Event::Kind kind, engine::DQDownload& download) {
    Event event{kind, download.displayName(), {}};
    if (kind == Event::Kind::Completed) {
        event.name = completionName(download);
        event.detail = completionDetail(download);
    } else if (kind == Event::Kind::Failed)
        event.detail = failureDetail(surroundings_.controller.rows().texts(), download);
    surroundings_.reporter.tell(event);
}

void Session::tellProblems(const QStringList& problems) {
    hasProblems_ = true;
    for (const QString& problem : problems)
        surroundings_.reporter.tell({Event::Kind::Problem, problem, {}});
}

void Session::requestRefresh() {
    if (!isSuspended_ && surroundings_.reporter.showsProgress())
        refresh_.request();
}

void Session::suspend() {
    isSuspended_ = true;
    refresh_.cancel();
    surroundings_.reporter.release();
}

void Session::resume() {
    isSuspended_ = false;
    surroundings_.reporter.invalidate();
    requestRefresh();
}

bool Session::draw() {
    const ProgressSnapshot snapshot{progressRows(surroundings_.controller.rows().texts(),
                                                 surroundings_.controller.queue().admission()),
                                    surroundings_.controller.queueStatus().text};
    surroundings_.reporter.show(snapshot);
    return !snapshot.rows.empty();
}

void Session::lookForEndSoon() {
    // Whoever reports a change may be in the middle of several.
    if (hasBegun_)
        look_.startUnlessActive(0, [this] { lookForEnd(); });
}

void Session::lookForEnd() {
    const DQMainController& controller = surroundings_.controller;
    if (controller.anyDownloadMatchesStatusMask(engine::activeStatuses))
        return;
    // Nobody tells of the end of an intake that makes no download.
    if (controller.isTakingIn() || willTakeUpAgain()) {
        look_.start(Refresh::idleInterval, [this] { lookForEnd(); });
        return;
    }
    hasBegun_ = false;
    suspend();
    didEnd_();
}

bool Session::willTakeUpAgain() const {
    const Downloads& downloads = surroundings_.controller.downloads();
    if (std::any_of(downloads.begin(), downloads.end(),
                    [](const auto& download) { return download->autoResumeAfterSleep(); }))
        return true;
    const platform::UserDefaults& defaults = surroundings_.defaults;
    const platform::Seconds sinceFailure = surroundings_.loop.clock().monotonic() - lastFailure_;
    return defaults.get(engine::settings::autoResume) &&
           sinceFailure <= defaults.get(engine::settings::autoResumeDelay) + Refresh::idleInterval;
}

}  // namespace app::terminal
