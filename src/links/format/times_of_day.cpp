#include "links/format/times_of_day.h"

namespace links {
namespace {

QDateTime localDate(QDate day, QTime time) {
    const QDateTime date(day, time);
    if (date.isValid())
        return date;
    return day.startOfDay().addMSecs(time.msecsSinceStartOfDay());
}

platform::Seconds interval(const QDateTime& from, const QDateTime& to) {
    return static_cast<double>(from.msecsTo(to)) / 1000.0;
}

}  // namespace

QDateTime dateWithHour(const QDateTime& date, int hour, int minute, int second) {
    return localDate(date.toLocalTime().date(), QTime(hour, minute, second));
}

NextTimeOfDay nextDateMatchingTimeOfDayWithTimeIntervalRemaining(const QDateTime& timeOfDay,
                                                                 const QDateTime& now) {
    return nextDateMatchingTimeOfDayWithTimeIntervalRemaining(timeOfDay.toLocalTime().time(), now);
}

NextTimeOfDay nextDateMatchingTimeOfDayWithTimeIntervalRemaining(QTime timeOfDay,
                                                                 const QDateTime& now) {
    const QTime wholeSeconds(timeOfDay.hour(), timeOfDay.minute(), timeOfDay.second());
    const QDate today = now.toLocalTime().date();
    QDateTime next = localDate(today, wholeSeconds);
    if (interval(now, next) < 1)
        next = localDate(today.addDays(1), wholeSeconds);
    return {next, interval(now, next)};
}

platform::Seconds timeIntervalToNextDateMatchingTimeOfDay(const QDateTime& timeOfDay,
                                                          const QDateTime& now) {
    return nextDateMatchingTimeOfDayWithTimeIntervalRemaining(timeOfDay, now).timeIntervalRemaining;
}

}  // namespace links
