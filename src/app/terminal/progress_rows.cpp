#include "app/terminal/progress_rows.h"

#include <QFileInfo>

#include "engine/settings.h"
#include "engine/status.h"
#include "engine/status_text.h"
#include "engine/transfer.h"
#include "links/byte_counts.h"
#include "links/localization.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"

namespace app::terminal {
namespace {

using namespace Qt::Literals::StringLiterals;
using links::localized;

QString statusText(int running, int unfinished) {
    if (running > 0 && unfinished > running)
        return links::filledFormat(localized("%d of %d downloads"),
                                   {QString::number(running), QString::number(unfinished)});
    if (unfinished == 1)
        return localized("1 download");
    if (unfinished == 0)
        return {};
    return links::filledFormat(localized("%d downloads"), {QString::number(unfinished)});
}

ProgressRow progressRow(const engine::DQDownload& download) {
    ProgressRow row;
    row.name = download.displayName();
    const engine::ProgressTexts texts = engine::progressTexts(download);
    if (texts.bytes.isEmpty()) {
        row.note = download.downloadProgressDescription();
        return row;
    }
    if (download.transfer().figures().isLengthKnown)
        row.fraction = download.downloadCompletionFraction();
    row.size = texts.bytes;
    if (!texts.rate.isEmpty())
        row.speed = texts.rate + u"/s"_s;
    row.timeLeft = texts.timeLeft;
    return row;
}

}  // namespace

ProgressSnapshot progressSnapshot(const std::vector<engine::DownloadPtr>& queue) {
    ProgressSnapshot snapshot;
    int unfinished = 0;
    for (const engine::DownloadPtr& download : queue) {
        if (engine::matchesStatusMask(download->status(), engine::unfinishedStatuses))
            ++unfinished;
        if (download->status() == engine::DQDownloadStatusDownloading)
            snapshot.rows.push_back(progressRow(*download));
    }
    snapshot.status = statusText(static_cast<int>(snapshot.rows.size()), unfinished);
    return snapshot;
}

QString completionDetail(engine::DQDownload& download) {
    const QString path = download.path();
    const QString size = links::fileSizeDescriptionWithBytesCount(
        static_cast<quint64>(platform::fileSize(path).value_or(0)));
    if (platform::standardDefaults().get(engine::settings::privateDownloading))
        return size;
    const QString folder = platform::abbreviateWithTilde(QFileInfo(path).path());
    return links::filledFormat(localized("%@ in %@"), {size, folder});
}

QString failureDetail(engine::DQDownload& download) {
    // The innermost error is the system's own word, such as that the disk is full.
    if (const auto& error = download.lastError())
        return error->underlying ? error->underlying->text : error->text;
    return download.statusDescriptionWithLiveDetails(false);
}

}  // namespace app::terminal
