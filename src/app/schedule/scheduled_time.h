#pragma once

#include <QDateTime>
#include <QVariantMap>

#include "platform/base/user_defaults.h"

namespace app {

/// One of the two times of the day at which the queue is acted upon.
struct ScheduledTime {
    const platform::Setting<QVariantMap>& setting;
    /// In force while the user has set no time.
    int defaultHour;
};

[[nodiscard]] const ScheduledTime& scheduledQueuingTime();
[[nodiscard]] const ScheduledTime& scheduledPausingTime();

void setScheduleTime(platform::UserDefaults& defaults, QTime timeOfDay, const ScheduledTime& time);
/// The time of the day in force, to the second.
[[nodiscard]] QTime scheduleTime(const platform::UserDefaults& defaults, const ScheduledTime& time);

}  // namespace app
