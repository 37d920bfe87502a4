#include "app/status/queue_status_reporter.h"

#include "app/lifecycle/lifecycle.h"
#include "app/main_controller.h"
#include "app/queue/batch_progress.h"
#include "app/queue/state_filter.h"
#include "app/settings.h"
#include "app/status/queue_totals.h"
#include "app/status/status_line.h"
#include "engine/queue/queue_tally.h"
#include "engine/settings.h"
#include "links/text/localization.h"
#include "platform/base/user_defaults.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Time for one more address to withdraw what is about to happen.
constexpr platform::Seconds graceTime = 1.0;
/// So that the notification of the last download comes first.
constexpr platform::Seconds doneNotificationDelay = 0.1;

ApplicationImage::Overlay overlay(const AllDone& allDone) {
    using Overlay = ApplicationImage::Overlay;
    if (allDone._mayTriggerSleepOnAllDone) {
        return Overlay::SleepWhenDone;
    }
    return allDone._mayTriggerShutDownOnAllDone ? Overlay::ShutDownWhenDone : Overlay::None;
}

}  // namespace

QueueStatusReporter::QueueStatusReporter(const Surroundings& surroundings)
    : surroundings_(surroundings),
      notifications_(surroundings.defaults, surroundings.frontEnd.notifications,
                     [this] { surroundings_.frontEnd.presence.showDownloadWindow(true); }),
      imageGate_(surroundings.loop.clock()),
      quitting_(surroundings.loop),
      consequences_(surroundings.loop) {}

void QueueStatusReporter::updateStatusAndForceUpdateApplicationImage(bool force) {
    DQMainController& controller = surroundings_.controller;
    quitting_.cancel();
    const engine::QueueTally& tally = controller.tally();
    const bool isAllDone = tally.count(engine::unfinishedStatuses) == 0;
    status_.reset();
    updateApplicationImage(force);
    if (isAllDone) {
        reflectAllDone();
    } else {
        AllDone& allDone = controller.allDone();
        allDone._mayTriggerAllDoneNotification = true;
        allDone._mayTriggerQuitOnAllDone = true;
    }
}

QueueStatus QueueStatusReporter::status() const {
    if (!status_) {
        DQMainController& controller = surroundings_.controller;
        const engine::QueueTally& tally = controller.tally();
        const QueueTotals totals = queueTotals(tally, surroundings_.loop.clock().monotonic());
        const HiddenRows hidden{controller.numberOfHiddenDownloads(),
                                controller.stateFilter().isOn()};
        status_ = QueueStatus{statusLine(tally, hidden), totalsText(totals),
                              shortTotalsText(totals, fraction(totals.sumOfFractions)),
                              tally.count(engine::finishedStatuses) > 0,
                              controller.lifecycle().wouldLoseDownloadsOnClose()};
    }
    return *status_;
}

double QueueStatusReporter::fraction(double sumOfFractions) const {
    DQMainController& controller = surroundings_.controller;
    return controller.batchProgress().fraction(controller.tally().count(engine::activeStatuses),
                                               sumOfFractions);
}

void QueueStatusReporter::updateApplicationImage(bool force) {
    DQMainController& controller = surroundings_.controller;
    const engine::QueueTally& tally = controller.tally();
    ApplicationImage image;
    image.upperCount = tally.count(engine::DQDownloadStatusDownloading);
    image.lowerCount = tally.count(engine::unfinishedStatuses) - image.upperCount;
    if (surroundings_.defaults.get(settings::swapDockCounters)) {
        std::swap(image.upperCount, image.lowerCount);
    }
    image.overlay = overlay(controller.allDone());
    image.fraction = fraction(tally.sumOfFractions());
    if (imageGate_.admits(image, force)) {
        Q_EMIT applicationImageChanged(image);
    }
}

void QueueStatusReporter::reflectAllDone() {
    DQMainController& controller = surroundings_.controller;
    AllDone& allDone = controller.allDone();
    if (allDone._mayTriggerAllDoneNotification) {
        allDone._mayTriggerAllDoneNotification = false;
        const bool failuresRemain = controller.numberOfFailedDownloads() > 0;
        consequences_.start(doneNotificationDelay,
                            [this, failuresRemain] { sendDoneUserNotification(failuresRemain); });
    }
    if (controller.isShowingQuitWhileDownloadingAlert()) {
        // The user wants to quit, and the reason for the question is gone. The question has to
        // return before the program can end.
        surroundings_.frontEnd.questions.dismissAlert();
        consequences_.start(0, [&controller] { controller.terminate(); });
        return;
    }
    if (allDone._mayTriggerQuitOnAllDone) {
        actOnAllDone();
    }
}

void QueueStatusReporter::actOnAllDone() {
    DQMainController& controller = surroundings_.controller;
    AllDone& allDone = controller.allDone();
    if (const platform::Seconds wait = controller.lastRemovalIsFreshFor(); wait > 0) {
        // The end would destroy what the user can still have back.
        quitting_.start(wait, [this] { updateStatusAndForceUpdateApplicationImage(false); });
    } else if (allDone._mayTriggerSleepOnAllDone) {
        allDone._mayTriggerQuitOnAllDone = false;
        allDone._mayTriggerSleepOnAllDone = false;
        updateApplicationImage(true);
        consequences_.start(graceTime, [&controller] { controller.lifecycle().sleep(); });
    } else if (allDone._mayTriggerShutDownOnAllDone) {
        // Once: a machine that refuses is not asked again at the next click.
        allDone._mayTriggerQuitOnAllDone = false;
        controller.lifecycle().shutDown();
    } else if (surroundings_.defaults.get(settings::autoQuit)) {
        quitting_.start(graceTime, [&controller] { controller.terminate(); });
    }
}

void QueueStatusReporter::playFeedback() {
    const bool isLast = surroundings_.controller.tally().count(engine::activeStatuses) == 0;
    const auto isWanted = [&](const platform::Setting<qint64>& setting) {
        const qint64 mode = surroundings_.defaults.get(setting);
        return mode == 1 || (mode > 1 && isLast);
    };
    Feedback& feedback = surroundings_.frontEnd.feedback;
    if (isWanted(settings::successBounceMode)) {
        feedback.requestUserAttention();
    }
    if (isWanted(settings::successHeartbeatMode)) {
        feedback.playSound(u"DQHeartbeat"_s);
    }
}

bool QueueStatusReporter::mayNotify() const {
    const platform::UserDefaults& defaults = surroundings_.defaults;
    const bool isHushed = defaults.get(engine::settings::privateDownloading) &&
                          !defaults.get(settings::privateDownloadingSendsUserNotifications);
    return !isHushed && !surroundings_.frontEnd.presence.isDownloadWindowActive();
}

bool QueueStatusReporter::sendUserNotification(const QString& identifier, const QString& title,
                                               const QString& informativeText, bool asAppendix) {
    return mayNotify() &&
           notifications_.sendNotification(identifier, title, informativeText, asAppendix);
}

bool QueueStatusReporter::sendUserNotificationWithActions(
    const QString& identifier, const QString& title, const QString& informativeText,
    const std::vector<platform::UserNotification::Action>& actions) {
    return mayNotify() &&
           notifications_.sendNotification(identifier, title, informativeText, false, actions);
}

void QueueStatusReporter::sendDoneUserNotification(bool failuresRemain) {
    sendUserNotification(u"Download Complete"_s, links::localized("Download Complete"),
                         failuresRemain ? links::localized("No active downloads remaining")
                                        : links::localized("Done"),
                         true);
}

}  // namespace app
