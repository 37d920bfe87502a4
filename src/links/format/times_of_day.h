#pragma once

#include <QDateTime>

#include "platform/base/clock.h"

namespace links {

/// The day of `date` in local time, at this time. A time that the day does not have, because clocks
/// are set ahead then, is later by as much as they are.
[[nodiscard]] QDateTime dateWithHour(const QDateTime& date, int hour, int minute, int second);

struct NextTimeOfDay {
    QDateTime date;
    /// Seconds from now to `date`, 1 at least.
    platform::Seconds timeIntervalRemaining;
};

/// When it is next so late in local time: today, or if that is less than a second ahead of `now`,
/// tomorrow. Milliseconds do not count, nor does the day of a date.
[[nodiscard]] NextTimeOfDay nextDateMatchingTimeOfDayWithTimeIntervalRemaining(
    QTime timeOfDay, const QDateTime& now);
[[nodiscard]] NextTimeOfDay nextDateMatchingTimeOfDayWithTimeIntervalRemaining(
    const QDateTime& timeOfDay, const QDateTime& now);
[[nodiscard]] platform::Seconds timeIntervalToNextDateMatchingTimeOfDay(const QDateTime& timeOfDay,
                                                                        const QDateTime& now);

}  // namespace links
