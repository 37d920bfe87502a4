#include "app/schedule/scheduled_time.h"

#include <algorithm>

#include "app/settings.h"
#include "links/format/times_of_day.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto hourKey = u"Hour"_s, minuteKey = u"Minute"_s, secondKey = u"Second"_s;

}  // namespace

const ScheduledTime& scheduledQueuingTime() {
    static const ScheduledTime time{settings::scheduleQueueTime, 22};
    return time;
}

const ScheduledTime& scheduledPausingTime() {
    static const ScheduledTime time{settings::schedulePauseTime, 6};
    return time;
}

void setScheduleTime(platform::UserDefaults& defaults, QTime timeOfDay, const ScheduledTime& time) {
    defaults.set(time.setting, QVariantMap{{hourKey, qint64{timeOfDay.hour()}},
                                           {minuteKey, qint64{timeOfDay.minute()}},
                                           {secondKey, qint64{timeOfDay.second()}}});
}

QTime scheduleTime(const platform::UserDefaults& defaults, const ScheduledTime& time) {
    if (!defaults.hasValueForKey(time.setting.name())) {
        return QTime(time.defaultHour, 0);
    }
    // Settings are edited by hand as well.
    const QVariantMap stored = defaults.dictionaryForKey(time.setting.name());
    const auto part = [&](const QString& key, int last) {
        return std::clamp(stored.value(key).toInt(), 0, last);
    };
    return QTime(part(hourKey, 23), part(minuteKey, 59), part(secondKey, 59));
}

}  // namespace app
