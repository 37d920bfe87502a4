#include "app/lifecycle/lifecycle.h"

#include <utility>

#include "app/settings.h"
#include "links/text/localization.h"
#include "platform/base/log.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

enum ApplicationMode : qint64 { inStatusItemOnly = 1 };
enum AutoRetreat : qint64 { stays = 0, stepsBack = 1 };

/// What the program's own window system needs to hide it before it can come back.
constexpr platform::Seconds retreatDelay = 0.1;

/// What the windows need to come up first.
constexpr platform::Seconds preferencesDelay = 0.5;

}  // namespace

Lifecycle::Lifecycle(Surroundings surroundings)
    : surroundings_(std::move(surroundings)),
      resuming_(surroundings_.loop),
      ending_(surroundings_.loop),
      windowChanges_(surroundings_.loop) {
    observation_ = surroundings_.defaults.observe([this](const QString& key) {
        if (key == settings::applicationMode.name()) {
            updateApplicationMode();
        }
    });
}

Lifecycle::~Lifecycle() {
    surroundings_.power.observe({});
}

void Lifecycle::willFinishLaunching() {
    updateApplicationMode();
}

void Lifecycle::updateApplicationMode() {
    surroundings_.frontEnd.presence.setShownInTaskBar(!isInStatusItemOnly());
}

bool Lifecycle::isInStatusItemOnly() const {
    return surroundings_.defaults.get(settings::applicationMode) == inStatusItemOnly &&
           isStatusItemShown_.value_or(true);
}

void Lifecycle::statusItemDidChange(std::optional<bool> isShown) {
    isStatusItemShown_ = isShown;
    updateApplicationMode();
    if (isShown == false &&
        surroundings_.defaults.get(settings::applicationMode) == inStatusItemOnly) {
        platform::log(u"the desktop shows no status item; the window comes back"_s,
                      platform::LogLevel::Warning);
        surroundings_.frontEnd.presence.showDownloadWindow(false);
    }
}

void Lifecycle::didFinishLaunching() {
    const platform::UserDefaults& defaults = surroundings_.defaults;
    windowChanges_.start(preferencesDelay, [this] { showPreferencesAskedFor(); });
    if (!isInStatusItemOnly() && defaults.get(settings::mainWindowVisibleOnLaunch)) {
        surroundings_.frontEnd.presence.showDownloadWindow(
            !defaults.get(settings::backgroundLaunch));
    }
    watchMachine();
    surroundings_.scheduler().resetSchedule();
}

void Lifecycle::showPreferencesAskedFor() {
    platform::UserDefaults& defaults = surroundings_.defaults;
    const QString section = defaults.get(settings::preferencesSection);
    if (!section.isEmpty()) {
        surroundings_.frontEnd.presence.showPreferencesSection(section);
        defaults.removeObject(settings::preferencesSection.name());
    }
}

void Lifecycle::watchMachine() {
    surroundings_.power.observe({[this] { workspaceWillSleep(); }, [this] { workspaceDidWake(); },
                                 [this] { surroundings_.writeArchive(); },
                                 [this] { timeDidChange(); }});
}

void Lifecycle::statusDidChange() {
    surroundings_.power.setPreventsIdleSleep(isActive());
    if (isActive()) {
        ending_.cancel();
    } else if (isUnseen_ && !ending_.isActive()) {
        // The buttons of the notification that all is done work for so long.
        constexpr platform::Seconds patience = 60;
        ending_.start(patience, [this] { endUnlessSeen(); });
    }
}

/// A program that was left to itself with its last downloads goes when they are done: nothing shows
/// that it is there.
void Lifecycle::endUnlessSeen() {
    const Presence& presence = surroundings_.frontEnd.presence;
    const engine::Downloads& downloads = surroundings_.queue.downloads();
    isUnseen_ = isUnseen_ && !presence.isDownloadWindowVisible();
    if (presence.isAnyWindowVisible() ||
        std::any_of(downloads.begin(), downloads.end(),
                    [](const auto& download) { return download->isResumeArranged(); })) {
        statusDidChange();
    } else if (isUnseen_ && !isStatusItemShown_.value_or(false) &&
               !presence.isOnScreenWithoutWindow()) {
        terminate();
    }
}

bool Lifecycle::shouldQuit() {
    if (!surroundings_.writeArchiveBeforeQuitting()) {
        return false;
    }
    surroundings_.scheduler().disableSchedule();
    surroundings_.power.observe({});
    surroundings_.history().cleanUp();
    surroundings_.frontEnd.presence.fadeDownloadWindow();
    return true;
}

void Lifecycle::terminate() {
    // A second pass would save what the first has paused as paused by the user.
    if (!hasTerminated_ && (isGoingDown_ || shouldQuit())) {
        end();
    }
}

void Lifecycle::end() {
    hasTerminated_ = true;
    surroundings_.terminated();
}

bool Lifecycle::isActive() const {
    return surroundings_.queue.tally().count(engine::activeStatuses) > 0;
}

bool Lifecycle::wouldLoseDownloadsOnClose() const {
    return isActive() && surroundings_.defaults.get(settings::quitOnClose) &&
           !surroundings_.defaults.get(settings::quitOnCloseCleanSlateOnly);
}

bool Lifecycle::windowShouldClose() {
    if (!shouldEndOnClose()) {
        return true;
    }
    terminate();
    return hasTerminated_;
}

/// A program that nobody sees and that does nothing would only be in the way.
bool Lifecycle::shouldEndOnClose() {
    const platform::UserDefaults& defaults = surroundings_.defaults;
    if (defaults.get(settings::quitOnClose) &&
        !(defaults.get(settings::quitOnCloseCleanSlateOnly) && isActive())) {
        return true;
    }
    if (isStatusItemShown_.value_or(false) ||
        surroundings_.frontEnd.presence.isOnScreenWithoutWindow()) {
        return false;
    }
    isUnseen_ = isActive();
    if (isActive() && !std::exchange(hasToldOfGoingOn_, true)) {
        surroundings_.goesOnUnseen(surroundings_.queue.tally().count(engine::activeStatuses));
    }
    return !isActive();
}

bool Lifecycle::applicationShouldHandleReopen() {
    Presence& presence = surroundings_.frontEnd.presence;
    if (presence.isDownloadWindowVisible()) {
        return true;
    }
    presence.showDownloadWindow(true);
    return false;
}

void Lifecycle::sleep() {
    surroundings_.power.requestSleep([this](const QString& refusal) {
        if (!refusal.isEmpty()) {
            surroundings_.frontEnd.feedback.beep();
            platform::log(u"cannot sleep"_s);
            surroundings_.refused(
                links::localized("The computer did not go to sleep: %1").arg(refusal));
        }
    });
}

void Lifecycle::shutDown() {
    if (hasTerminated_ || isGoingDown_ || !shouldQuit()) {
        return;
    }
    isGoingDown_ = true;
    surroundings_.power.requestShutDown([this](const QString& refusal) {
        isGoingDown_ = false;
        if (hasTerminated_) {
            return;
        }
        if (refusal.isEmpty()) {
            end();
        } else {
            stayAfterRefusal(refusal);
        }
    });
}

/// By now everything is saved and paused, and the window is gone.
void Lifecycle::stayAfterRefusal(const QString& refusal) {
    surroundings_.frontEnd.feedback.beep();
    platform::log(u"cannot shut down"_s);
    watchMachine();
    surroundings_.scheduler().resetSchedule();
    surroundings_.frontEnd.presence.showDownloadWindow(false);
    surroundings_.refused(links::localized("The computer was not shut down: %1").arg(refusal));
}

void Lifecycle::workspaceWillSleep() {
    surroundings_.scheduler().disableSchedule();
    resuming_.cancel();
    const bool resumes = surroundings_.defaults.get(settings::autoResumeAfterSleepDelay) >= 0;
    const engine::DownloadQueue::Batch batch(surroundings_.queue);
    for (const engine::DownloadPtr& download :
         surroundings_.queue.downloadsMatchingStatusMask(engine::activeStatuses)) {
        download->pause();
        if (resumes) {
            download->setAutoResumeAfterSleep(true);
        }
    }
    // The machine may never wake from it.
    surroundings_.writeArchive();
}

void Lifecycle::workspaceDidWake() {
    surroundings_.scheduler().resetSchedule();
    resuming_.cancel();
    const qint64 delay = surroundings_.defaults.get(settings::autoResumeAfterSleepDelay);
    if (delay >= 0) {
        lookForNetwork(static_cast<double>(delay), 0);
    }
}

/// The network comes some time after the machine, and without it all would fail at once.
void Lifecycle::lookForNetwork(platform::Seconds next, platform::Seconds waited) {
    constexpr platform::Seconds interval = 1, longest = 60;
    resuming_.start(next, [this, next, waited] {
        if (surroundings_.power.hasNetwork() || waited + next >= longest) {
            resumeAfterSleep();
        } else {
            lookForNetwork(interval, waited + next);
        }
    });
}

void Lifecycle::resumeAfterSleep() {
    const engine::DownloadQueue::Batch batch(surroundings_.queue);
    const engine::Downloads downloads = surroundings_.queue.downloads();
    for (const engine::DownloadPtr& download : downloads) {
        if (download->autoResumeAfterSleep()) {
            download->addToQueue();
            download->setAutoResumeAfterSleep(false);
        }
    }
}

void Lifecycle::timeDidChange() {
    surroundings_.scheduler().resetSchedule();
}

void Lifecycle::giveFeedback() {
    Presence& presence = surroundings_.frontEnd.presence;
    if (retreats()) {
        windowChanges_.start(retreatDelay, [this] { retreat(); });
    } else if (presence.isHidden()) {
        presence.unhide(true);
    }
}

bool Lifecycle::retreats() const {
    return surroundings_.defaults.get(settings::autoRetreat) > stays;
}

/// Hands the focus back to the program that the user came from.
void Lifecycle::retreat() {
    Presence& presence = surroundings_.frontEnd.presence;
    if (surroundings_.defaults.get(settings::autoRetreat) != stepsBack) {
        if (!presence.isHidden()) {
            presence.hide();
        }
        return;
    }
    if (presence.isHidden()) {
        presence.unhide(false);
        return;
    }
    if (!presence.isDownloadWindowActive()) {
        return;  // Another program has the focus already.
    }
    presence.orderDownloadWindowBack();
    presence.hide();
    windowChanges_.start(retreatDelay, [this] { unhideAfterRetreat(); });
}

void Lifecycle::unhideAfterRetreat() {
    surroundings_.frontEnd.presence.unhide(false);
}

}  // namespace app
