#include "app/schedule/daily_schedule.h"

#include "app/commands/bulk_commands.h"
#include "app/schedule/scheduled_time.h"
#include "app/settings.h"
#include "links/format/durations.h"
#include "links/format/times_of_day.h"
#include "links/text/localization.h"
#include "platform/base/log.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

bool isScheduleSetting(const QString& key) {
    return key == settings::scheduleQueue.name() || key == settings::scheduleQueueTime.name() ||
           key == settings::schedulePause.name() || key == settings::schedulePauseTime.name();
}

void logNext(const QString& format, platform::Seconds seconds) {
    platform::debugLog(
        [&] { return links::filledFormat(format, {links::durationDescription(true, seconds)}); });
}

}  // namespace

DailySchedule::DailySchedule(const Surroundings& surroundings)
    : surroundings_(surroundings), queueing_(surroundings.loop), pausing_(surroundings.loop) {
    observation_ = surroundings_.defaults.observe([this](const QString& key) {
        if (isEnabled_ && isScheduleSetting(key)) {
            resetSchedule();
        }
    });
}

void DailySchedule::resetSchedule() {
    cancelPendingCalls();
    isEnabled_ = true;
    const platform::UserDefaults& defaults = surroundings_.defaults;
    if (defaults.get(settings::scheduleQueue)) {
        const platform::Seconds interval = secondsUntil(scheduledQueuingTime());
        logNext(u"next scheduled queue cycle in %@"_s, interval);
        queueing_.start(interval, [this] { scheduledQueueAll(); });
    }
    if (defaults.get(settings::schedulePause)) {
        const platform::Seconds interval = secondsUntil(scheduledPausingTime());
        logNext(u"next scheduled pause in %@"_s, interval);
        pausing_.start(interval, [this] { scheduledPauseAll(); });
    }
}

void DailySchedule::disableSchedule() {
    isEnabled_ = false;
    cancelPendingCalls();
}

void DailySchedule::cancelPendingCalls() {
    queueing_.cancel();
    pausing_.cancel();
}

platform::Seconds DailySchedule::secondsUntil(const ScheduledTime& time) const {
    constexpr double millisecondsPerSecond = 1000;
    const QDateTime now = QDateTime::fromMSecsSinceEpoch(
        static_cast<qint64>(surroundings_.loop.clock().wall() * millisecondsPerSecond));
    // Not by way of a date: today may not have that time.
    return links::nextDateMatchingTimeOfDayWithTimeIntervalRemaining(
               scheduleTime(surroundings_.defaults, time), now)
        .timeIntervalRemaining;
}

void DailySchedule::scheduledQueueAll() {
    platform::debugLog([] { return u"schedule: queue"_s; });
    queuePaused(surroundings_.queue, surroundings_.queue.downloads());
    surroundings_.list.setNeedsDisplay();
    resetSchedule();
}

void DailySchedule::scheduledPauseAll() {
    platform::debugLog([] { return u"schedule: pause"_s; });
    const bool isRadical = surroundings_.defaults.get(settings::schedulePauseRadical);
    pauseDownloads(surroundings_.queue,
                   surroundings_.queue.downloadsMatchingStatusMask(
                       isRadical ? engine::activeStatuses
                                 : engine::StatusMask{engine::DQDownloadStatusQueued}));
    surroundings_.list.setNeedsDisplay();
    resetSchedule();
}

}  // namespace app
