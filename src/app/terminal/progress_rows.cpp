#include "app/terminal/progress_rows.h"

#include <QFileInfo>

#include "app/failures/failure_sentence.h"
#include "app/rows/status_text.h"
#include "engine/context.h"
#include "engine/record/status.h"
#include "engine/record/user_settings.h"
#include "engine/settings.h"
#include "links/format/byte_counts.h"
#include "links/text/localization.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"
#include "platform/net/status_codes.h"

namespace app::terminal {
namespace {

using namespace Qt::Literals::StringLiterals;
using links::localized;

ProgressRow progressRow(const StatusTexts& statusTexts, const engine::DQDownload& download) {
    ProgressRow row;
    row.name = download.displayName();
    const StatusTexts::Progress texts = statusTexts.progress(download);
    if (texts.bytes.isEmpty()) {
        row.note = statusTexts.downloadProgressDescription(download);
        return row;
    }
    if (download.figures().isLengthKnown)
        row.fraction = download.downloadCompletionFraction();
    row.size = texts.bytes;
    if (!texts.rate.isEmpty())
        row.speed = texts.rate + u"/s"_s;
    row.timeLeft = texts.timeLeft;
    return row;
}

}  // namespace

std::vector<ProgressRow> progressRows(const StatusTexts& texts, engine::QueueAdmission& admission) {
    std::vector<ProgressRow> rows;
    for (const engine::DownloadPtr& download : admission.downloadingDownloads())
        rows.push_back(progressRow(texts, *download));
    for (const engine::DownloadPtr& download : admission.refusedDownloads()) {
        ProgressRow row;
        row.name = download->displayName();
        row.note = texts.hostWaitDescription(*download);
        rows.push_back(row);
    }
    return rows;
}

QString completionName(const engine::DQDownload& download) {
    const bool isPrivate = download.context().defaults.get(engine::settings::privateDownloading);
    const QString onDisk = QFileInfo(download.path()).fileName();
    return isPrivate || onDisk.isEmpty() ? download.displayName() : onDisk;
}

QString completionDetail(const engine::DQDownload& download) {
    const QString path = download.path();
    const QString size = links::fileSizeText(platform::fileSize(path).value_or(0));
    if (download.context().defaults.get(engine::settings::privateDownloading))
        return size;
    const QString folder = platform::abbreviateWithTilde(QFileInfo(path).path());
    return links::filledFormat(localized("%@ in %@"), {size, folder});
}

QString failureDetail(const StatusTexts& texts, engine::DQDownload& download) {
    if (const QString sentence = failureSentence(download); !sentence.isEmpty())
        return sentence;
    const QString status = texts.statusDescriptionWithLiveDetails(download, false);
    const int code = download.userSettings().value(engine::keys::statusCode).toInt();
    // A status of success does not say by itself what was wrong.
    const bool wasEmpty = code == 0 || platform::status::isSuccess(code);
    return wasEmpty ? links::filledFormat(localized("%@ (nothing was sent)"), {status}) : status;
}

}  // namespace app::terminal
