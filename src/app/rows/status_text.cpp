#include "app/rows/status_text.h"

#include <algorithm>
#include <cmath>

#include "app/checksums/checksum_texts.h"
#include "app/failures/failure_sentence.h"
#include "app/rows/file_presence.h"
#include "app/rows/running_figures.h"
#include "engine/queue/download_queue.h"
#include "engine/record/known_file.h"
#include "engine/settings.h"
#include "links/format/byte_counts.h"
#include "links/format/dates.h"
#include "links/format/durations.h"
#include "links/names/anonymized_names.h"
#include "links/paths/path_components.h"
#include "links/text/localization.h"
#include "links/text/typography.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace app {

namespace {

using engine::DQDownload;
namespace keys = engine::keys;

using links::filledFormat;
using links::localized;

QString bytesText(const engine::OverallFigures& figures) {
    if (figures.total() >= figures.expected)
        return links::fileSizeText(figures.total());
    return filledFormat(localized("%@ of %@"), {links::partialFileSizeDescriptionWithBytesCount(
                                                    static_cast<quint64>(figures.total()),
                                                    static_cast<quint64>(figures.expected)),
                                                links::fileSizeText(figures.expected)});
}

/// Empty if it is hardly worth saying.
QString timeLeftText(const engine::OverallFigures& figures, const engine::SpeedMeter::Span& span) {
    constexpr platform::Seconds leastShown = 1;
    const platform::Seconds left =
        span.bytes > 0
            ? span.seconds * static_cast<double>(figures.expected - figures.total()) / span.bytes
            : 0;
    return left < leastShown ? QString() : links::durationDescription(false, left);
}

QString withDetail(const QString& text, const QString& detail) {
    return detail.isEmpty()
               ? text
               : filledFormat(localized("%@%@%@"), {text, links::spacedDashString(), detail});
}

/// How much there is to go on with. Empty: nothing.
QString keptText(const DQDownload& download) {
    const qint64 kept = heldBytes(download);
    if (kept < 1)
        return {};
    engine::OverallFigures figures;
    figures.downloaded = kept;
    figures.expected = engine::knownFile(download.userSettings()).length;
    return filledFormat(localized("%@ kept"), {bytesText(figures)});
}

QString wholePercent(const DQDownload& download) {
    return QString::number(static_cast<int>(download.downloadCompletionFraction() * 100));
}

QString percentText(const DQDownload& download) {
    return localized("Downloading: %ld%%")
        .replace(u"%ld"_s, wholePercent(download))
        .replace(u"%%"_s, u"%"_s);
}

/// Marks on a download that has not begun.
QString decorated(const QString& text, const DQDownload& download) {
    QString result = text;
    if (download.isDownloadPageURL())
        result = filledFormat(localized("%@%@⎇"), {result, links::spacedDashString()});
    if (download.accelerates())
        result = filledFormat(localized("%@%@%@"),
                              {result, links::spacedDashString(), localized("Accelerate")});
    return result;
}

}  // namespace

StatusTexts::StatusTexts(engine::DownloadQueue& queue, FilePresence& presence)
    : queue_(queue), presence_(presence), defaults_(queue.context().defaults) {}

QString StatusTexts::withAccelerationSuffix(const QString& text, const DQDownload& download) const {
    const engine::UserSettings& settings = download.userSettings();
    // One that has helped another has had several parts.
    const auto most =
        static_cast<std::size_t>(defaults_.get(engine::settings::accelerationChannels));
    const std::size_t connections = std::min(download.workers().size(), most);
    if (settings.contains(keys::keptAside))
        return text + localized(" - Begun anew");
    if (settings.boolean(keys::rangesDisabled))
        return text + localized(" - Acceleration not supported");
    if (settings.boolean(keys::accelerationFailed))
        return text + localized(" - Acceleration failed");
    if (connections >= 2 && defaults_.get(engine::settings::displayAccelerationConnections))
        return filledFormat(localized("%@ - %lu connections"),
                            {text, QString::number(connections)});
    return text;
}

QString StatusTexts::abortedText(const DQDownload& download, bool live) const {
    QString text =
        withDetail(localized("Aborted"), download.userSettings().string(keys::statusCode));
    text = withDetail(text, keptText(download));
    return live ? withDetail(text, refusalSentence(download)) : text;
}

QString StatusTexts::doneText(DQDownload& download) const {
    const QString folder =
        platform::abbreviateWithTilde(links::stringByDeletingLastPathComponent(download.path()));
    if (!download.path().isEmpty() && !presence_.isThere(download))
        return filledFormat(localized("Gone from %@"), {folder});
    const QString text =
        withDetail(localized("Complete"),
                   links::fuzzyDescription(download.doneDate(), queue_.context().wallNow()));
    return download.userSettings().boolean(keys::leftBehind)
               ? withDetail(text, filledFormat(localized("Lies in %@"), {folder}))
               : text;
}

QString StatusTexts::hostWaitDescription(const DQDownload& download) const {
    const auto wait = queue_.admission().hostWait(download);
    if (!wait)
        return {};
    const QString host = anonymizedHost(wait->host);
    if (wait->remaining > 0)
        return filledFormat(localized("Waiting for %@: %@"),
                            {host, links::durationDescription(false, std::ceil(wait->remaining))});
    // Of the others the place in the queue says more.
    return download.wasRefused() ? filledFormat(localized("Waiting for %@"), {host}) : QString();
}

QString StatusTexts::waitingText(const DQDownload& download, bool live) const {
    if (const QString wait = hostWaitDescription(download); !wait.isNull())
        return wait;
    if (live && queue_.admission().queuedDownloads().size() >= 2) {
        if (const QString place = queueIndexDescription(download); !place.isNull())
            return filledFormat(localized("Waiting: #%@"), {place});
    }
    return localized("Waiting");
}

QString StatusTexts::stoppedText(const DQDownload& download, bool live) const {
    if (download.wasGivenUp())
        return abortedText(download, live);
    QString text = localized("Pending");
    QString detail;
    if (download.userSettings().contains(keys::responseURL)) {
        text = download.isInterrupted() ? localized("Interrupted") : localized("Paused");
        detail = download.isInterrupted() ? keptText(download) : QString();
    }
    if (!live)
        return withDetail(text, detail);
    text = withDetail(text + pausedHostDescription(download), detail);
    // A row that has failed must not look like one that waits for its user.
    return download.isInterrupted() && download.lastError()
               ? withDetail(text, failureSentence(*download.lastError(), {}))
               : text;
}

QString StatusTexts::anonymizedHost(const QString& host) const {
    return defaults_.get(engine::settings::privateDownloading)
               ? links::anonymizedStringPreservingExtension(host, true, false)
               : host;
}

StatusTexts::Progress StatusTexts::progress(const DQDownload& download) const {
    const auto [figures, span] = runningFigures(download, queue_.context().monotonicNow());
    if (figures.expected < 1)
        return {};
    Progress texts{bytesText(figures), {}, {}, {}};
    if (figures.isLengthKnown)
        texts.percent = wholePercent(download) + u" %"_s;
    if (span) {
        texts.rate = links::fileSizeText(shownRate(span->bytes / span->seconds));
        texts.timeLeft = timeLeftText(figures, *span);
    }
    return texts;
}

QString StatusTexts::bytesDescription(const Progress& progress, const DQDownload& download) const {
    return withAccelerationSuffix(progress.bytes, download);
}

QString StatusTexts::downloadProgressDescription(const DQDownload& download) const {
    return downloadProgressDescription(progress(download), download);
}

QString StatusTexts::downloadProgressDescription(const Progress& texts,
                                                 const DQDownload& download) const {
    if (texts.bytes.isEmpty())
        return localized("Connecting...");
    QString text = texts.bytes;
    if (!texts.timeLeft.isEmpty())
        text = filledFormat(localized("%@ at %@/s - %@ remaining"),
                            {texts.bytes, texts.rate, texts.timeLeft});
    else if (!texts.rate.isEmpty())
        text = filledFormat(localized("%@ at %@/s"), {texts.bytes, texts.rate});
    return withAccelerationSuffix(text, download);
}

QString StatusTexts::statusDescriptionWithLiveDetails(DQDownload& download, bool live) const {
    switch (download.status()) {
        case engine::DQDownloadStatusAborted:
            return download.isWrongFile() ? withDetail(localized("Aborted"), checksumText(download))
                                          : abortedText(download, live);
        case engine::DQDownloadStatusDone:
            return download.isWrongFile() ? checksumText(download)
                                          : withDetail(doneText(download), checksumText(download));
        case engine::DQDownloadStatusDownloading:
            if (download.isVerifying())
                return checksumText(download);
            return live ? downloadProgressDescription(download) : percentText(download);
        case engine::DQDownloadStatusQueued:
        case engine::DQDownloadStatusPaused:
            break;
    }
    const QString text =
        download.status() == engine::DQDownloadStatusQueued ? waitingText(download, live)
        : download.isWrongFile() ? withDetail(localized("Paused"), checksumText(download))
                                 : stoppedText(download, live);
    return live && !download.userSettings().contains(keys::responseURL) ? decorated(text, download)
                                                                        : text;
}

QString StatusTexts::queueIndexDescription(const DQDownload& download) const {
    const engine::QueueAdmission::Position position =
        queue_.admission().positionOfQueuedDownload(download);
    if (position.index == engine::notFound)
        return {};
    if (!position.host)
        return filledFormat(localized("%lu"), {QString::number(position.index + 1)});
    return filledFormat(localized("%lu @ %@"),
                        {QString::number(position.hostIndex + 1), anonymizedHost(*position.host)});
}

QString StatusTexts::pausedHostDescription(const DQDownload& download) const {
    const QString& host = download.queueRelevantHost();
    if (queue_.admission().numberOfConcurrentDownloadsPerHost() < 1 || host.isEmpty())
        return {};
    return queue_.admission().hasPausedDownloadsOfOtherHosts(host) ? u" @ "_s + anonymizedHost(host)
                                                                   : QString();
}

}  // namespace app
