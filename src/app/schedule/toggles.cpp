#include "app/schedule/toggles.h"

#include "app/controller_roles.h"
#include "app/schedule/scheduled_time.h"
#include "app/settings.h"
#include "engine/acceleration/acceleration_settings.h"
#include "engine/workers/throttle.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

Alert shutDownAlert() {
    return {Alert::Kind::ShutDownWhenDone, u"Shut down when done?"_s,
            u"Are you sure you want Orlop to shut down your computer once all downloads are "
            "done?\n\nPlease note that Orlop will not remember this setting across restarts. Also, "
            "Orlop cannot guarantee your computer will actually shut down, as other applications "
            "may refuse to quit without any user interaction."_s,
            u"Shut down when done"_s, u"Cancel"_s};
}

/// There is nothing to wait for, which whoever chooses it may not know.
Alert sleepNowAlert() {
    return {Alert::Kind::ShutDownWhenDone, u"Sleep now?"_s,
            u"All downloads are done already, so the computer would go to sleep at once."_s,
            u"Sleep Now"_s, u"Cancel"_s};
}

Alert shutDownNowAlert() {
    return {Alert::Kind::ShutDownWhenDone,
            u"Shut down now?"_s,
            u"All downloads are done already, so the computer would be shut down at once."_s,
            u"Shut Down Now"_s,
            u"Cancel"_s,
            true};
}

}  // namespace

Toggles::Toggles(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

void Toggles::toggle(const platform::Setting<bool>& setting) {
    surroundings_.defaults.set(setting, !surroundings_.defaults.get(setting));
}

bool Toggles::isAllDone() const {
    return surroundings_.queue.tally().count(engine::unfinishedStatuses) == 0;
}

void Toggles::toggleAutoSleep() {
    AllDone& allDone = surroundings_.allDone;
    if (allDone._mayTriggerSleepOnAllDone) {
        allDone._mayTriggerSleepOnAllDone = false;
    } else if (!isAllDone() || surroundings_.questions.confirm(sleepNowAlert())) {
        allDone._mayTriggerSleepOnAllDone = true;
        allDone._mayTriggerShutDownOnAllDone = false;
        // Whoever agrees to it now means now.
        allDone._mayTriggerQuitOnAllDone = allDone._mayTriggerQuitOnAllDone || isAllDone();
    }
    surroundings_.updateStatus(true);
}

void Toggles::toggleAutoShutDown() {
    AllDone& allDone = surroundings_.allDone;
    if (allDone._mayTriggerShutDownOnAllDone) {
        allDone._mayTriggerShutDownOnAllDone = false;
    } else if (surroundings_.questions.confirm(isAllDone() ? shutDownNowAlert()
                                                           : shutDownAlert())) {
        allDone._mayTriggerShutDownOnAllDone = true;
        allDone._mayTriggerSleepOnAllDone = false;
        allDone._mayTriggerQuitOnAllDone = allDone._mayTriggerQuitOnAllDone || isAllDone();
    }
    surroundings_.updateStatus(true);
}

bool Toggles::mayTriggerSleepOnAllDone() const {
    return surroundings_.allDone._mayTriggerSleepOnAllDone;
}

bool Toggles::mayTriggerShutDownOnAllDone() const {
    return surroundings_.allDone._mayTriggerShutDownOnAllDone;
}

void Toggles::toggleAcceleration() {
    engine::AccelerationSettings settings(surroundings_.defaults);
    settings.setAccelerates(!settings.accelerates());
}

void Toggles::toggleThrottle() {
    engine::Throttle& throttle = surroundings_.queue.throttle();
    throttle.setThrottled(!throttle.isThrottled());
}

void Toggles::toggleScheduledQueuing() {
    toggle(settings::scheduleQueue);
}

void Toggles::toggleScheduledPausing() {
    toggle(settings::schedulePause);
}

void Toggles::changeScheduledTime(const ScheduledTime& time, QTime timeOfDay) {
    setScheduleTime(surroundings_.defaults, timeOfDay, time);
}

void Toggles::setAutoClearSuccesses(bool clears) {
    setAutoClear(settings::autoClearSuccesses, clears, engine::DQDownloadStatusDone);
}

void Toggles::setAutoClearLemons(bool clears) {
    setAutoClear(settings::autoClearLemons, clears, engine::DQDownloadStatusAborted);
}

void Toggles::setAutoClear(const platform::Setting<bool>& setting, bool clears,
                           engine::StatusMask mask) {
    surroundings_.defaults.set(setting, clears);
    if (clears) {
        surroundings_.vanish(mask);
    }
}

void Toggles::setAutoQuit(bool quits) {
    surroundings_.defaults.set(settings::autoQuit, quits);
    surroundings_.allDone._mayTriggerQuitOnAllDone = false;
}

void Toggles::setCloseBehavior(CloseBehavior behavior) {
    surroundings_.defaults.set(settings::quitOnClose, behavior != CloseBehavior::Stays);
    surroundings_.defaults.set(settings::quitOnCloseCleanSlateOnly,
                               behavior == CloseBehavior::QuitsOnCleanSlate);
    surroundings_.updateStatus(false);
}

CloseBehavior Toggles::closeBehavior() const {
    if (!surroundings_.defaults.get(settings::quitOnClose)) {
        return CloseBehavior::Stays;
    }
    return surroundings_.defaults.get(settings::quitOnCloseCleanSlateOnly)
               ? CloseBehavior::QuitsOnCleanSlate
               : CloseBehavior::Quits;
}

}  // namespace app
