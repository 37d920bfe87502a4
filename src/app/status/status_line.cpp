#include "app/status/status_line.h"

#include "engine/queue/queue_tally.h"
#include "links/text/localization.h"
#include "links/text/typography.h"

namespace app {
namespace {

using links::filledFormat;
using links::localized;

QString countText(qint64 running, qint64 unfinished) {
    if (running > 0 && unfinished > running) {
        return filledFormat(localized("%d of %d downloads"),
                            {QString::number(running), QString::number(unfinished)});
    }
    return unfinished == 1 ? localized("1 download")
                           : filledFormat(localized("%d downloads"), {QString::number(unfinished)});
}

/// A text that is looked for is told of by what it leaves; how rows stand, by what it hides.
QString hiddenText(const HiddenRows& hidden, qint64 unfinished) {
    if (hidden.isByState) {
        return filledFormat(localized("%d hidden"), {QString::number(hidden.count)});
    }
    return filledFormat(localized("%d filtered"), {QString::number(unfinished - hidden.count)});
}

}  // namespace

QString statusLine(const engine::QueueTally& tally, const HiddenRows& hidden) {
    const qint64 unfinished = tally.count(engine::unfinishedStatuses);
    const bool isHiding = hidden.count > 0;
    if (unfinished == 0) {
        return isHiding && hidden.isByState ? hiddenText(hidden, unfinished) : QString();
    }
    const QString text = countText(tally.count(engine::DQDownloadStatusDownloading), unfinished);
    return isHiding ? text + links::spacedDashString() + hiddenText(hidden, unfinished) : text;
}

}  // namespace app
