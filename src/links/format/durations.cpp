#include "links/format/durations.h"

#include <cmath>

#include "links/format/numbers.h"
#include "links/text/localization.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

constexpr quint64 secondsPerHour = 3600;
constexpr quint64 secondsPerDay = 86400;

quint64 wholeSeconds(double seconds) {
    constexpr double most = 1e18;
    return std::isnan(seconds) ? 0 : static_cast<quint64>(std::min(std::fabs(seconds), most));
}

QString twoDigits(quint64 number) {
    return QString::number(number).rightJustified(2, u'0');
}

QString daysDescription(quint64 seconds) {
    const double days = static_cast<double>(seconds) / static_cast<double>(secondsPerDay);
    const QString text = stringWithFloat(days, 1, true);
    return text == u"1" ? localized("1 day") : filledFormat(localized("%@ days"), {text});
}

}  // namespace

QString durationDescription(bool fixedForm, double seconds) {
    const quint64 whole = wholeSeconds(seconds);
    if (!fixedForm && whole >= secondsPerDay)
        return daysDescription(whole);
    const quint64 hours = whole / secondsPerHour;
    const quint64 minutes = whole / 60 % 60;
    const QString tail = u':' + twoDigits(whole % 60);
    if (fixedForm)
        return twoDigits(hours) + u':' + twoDigits(minutes) + tail;
    if (hours > 0)
        return QString::number(hours) + u':' + twoDigits(minutes) + tail;
    return QString::number(minutes) + tail;
}

}  // namespace links
