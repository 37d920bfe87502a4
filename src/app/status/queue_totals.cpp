#include "app/status/queue_totals.h"

#include "app/rows/running_figures.h"
#include "engine/lifecycle/download.h"
#include "engine/queue/queue_tally.h"
#include "links/format/byte_counts.h"
#include "links/format/durations.h"
#include "links/text/localization.h"

namespace app {

using namespace Qt::Literals::StringLiterals;
using links::filledFormat;
using links::localized;

namespace {

QString rateText(double bytesPerSecond) {
    return filledFormat(localized("%@/s"), {links::fileSizeText(shownRate(bytesPerSecond))});
}

}  // namespace

QueueTotals queueTotals(const engine::QueueTally& tally, platform::Seconds now) {
    QueueTotals totals;
    double bytesLeft = 0, knownRate = 0;
    for (const engine::DQDownload* download : tally.running()) {
        const RunningFigures running = runningFigures(*download, now);
        const double rate = running.span ? running.span->bytes / running.span->seconds : 0;
        totals.bytesPerSecond += rate;
        if (!running.figures.isLengthKnown)
            continue;
        knownRate += rate;
        bytesLeft += running.bytesLeft();
        totals.sumOfFractions += download->downloadCompletionFraction();
    }
    if (knownRate >= 1)
        totals.timeLeft = bytesLeft / knownRate;
    return totals;
}

QString totalsText(const QueueTotals& totals) {
    if (totals.bytesPerSecond < 1)
        return {};
    const QString rate = rateText(totals.bytesPerSecond);
    return totals.timeLeft < 1
               ? rate
               : filledFormat(localized("%@ - %@ remaining"),
                              {rate, links::durationDescription(false, totals.timeLeft)});
}

QString shortTotalsText(const QueueTotals& totals, double fraction) {
    QStringList parts;
    if (fraction >= 0)
        parts.append(QString::number(static_cast<int>(fraction * 100)) + u" %"_s);
    if (totals.bytesPerSecond >= 1)
        parts.append(rateText(totals.bytesPerSecond));
    return parts.join(u" · "_s);
}

}  // namespace app
