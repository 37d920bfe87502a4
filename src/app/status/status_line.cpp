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

}  // namespace

QString statusLine(const engine::QueueTally& tally, qint64 hidden) {
    const qint64 unfinished = tally.count(engine::unfinishedStatuses);
    if (unfinished == 0) {
        return {};
    }
    QString text = countText(tally.count(engine::DQDownloadStatusDownloading), unfinished);
    if (hidden > 0) {
        text += links::spacedDashString() +
                filledFormat(localized("%d filtered"), {QString::number(unfinished - hidden)});
    }
    return text;
}

}  // namespace app
