#include "app/schedule/scheduled_time.h"

#include <algorithm>

#include "app/settings.h"
#include "links/format/times_of_day.h"
#include "platform/base/values.h"

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
    // Settings are edited by hand as well.
    const QVariantMap stored = defaults.dictionaryForKey(time.setting.name());
    const auto part = [&](const QString& key, int last, qint64 otherwise) {
        bool isNumber = false;
        const double number = stored.value(key).toDouble(&isNumber);
        return static_cast<int>(
            isNumber ? std::clamp(platform::integerValue(number), qint64{0}, qint64{last})
                     : otherwise);
    };
    return QTime(part(hourKey, 23, time.defaultHour), part(minuteKey, 59, 0),
                 part(secondKey, 59, 0));
}

}  // namespace app
