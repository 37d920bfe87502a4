#include "engine/presentation/status_text.h"

#include "engine/admission/queue_admission.h"
#include "engine/lifecycle/transfer.h"
#include "engine/now.h"
#include "engine/record/download.h"
#include "engine/record/download_dates.h"
#include "engine/record/user_settings.h"
#include "engine/settings.h"
#include "links/format/byte_counts.h"
#include "links/format/dates.h"
#include "links/format/durations.h"
#include "links/names/anonymized_names.h"
#include "links/text/localization.h"
#include "links/text/typography.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

using links::filledFormat;
using links::localized;

QString sizeText(qint64 bytes) {
    return links::fileSizeDescriptionWithBytesCount(static_cast<quint64>(bytes));
}

QString bytesText(const OverallFigures& figures) {
    if (figures.total() >= figures.expected)
        return sizeText(figures.total());
    return filledFormat(localized("%@ of %@"), {links::partialFileSizeDescriptionWithBytesCount(
                                                    static_cast<quint64>(figures.total()),
                                                    static_cast<quint64>(figures.expected)),
                                                sizeText(figures.expected)});
}

/// Of a middling rate only the leading digits, since the others change at every look.
qint64 shownRate(const SpeedMeter::Span& span) {
    constexpr qint64 kilo = 1000;
    constexpr qint64 mega = 1000 * kilo;
    const auto rate = static_cast<qint64>(span.bytes / span.seconds);
    return rate > kilo && rate < mega ? rate / kilo * kilo : rate;
}

/// Empty if it is hardly worth saying.
QString timeLeftText(const OverallFigures& figures, const SpeedMeter::Span& span) {
    constexpr platform::Seconds leastShown = 1;
    const platform::Seconds left =
        span.bytes > 0
            ? span.seconds * static_cast<double>(figures.expected - figures.total()) / span.bytes
            : 0;
    return left < leastShown ? QString() : links::durationDescription(false, left);
}

QString withAccelerationSuffix(const QString& text, const DQDownload& download) {
    const UserSettings& settings = download.userSettings();
    const std::size_t connections = download.transfer().workers().size();
    if (settings.boolean(keys::rangesDisabled))
        return text + localized(" - Acceleration not supported");
    if (settings.boolean(keys::accelerationFailed))
        return text + localized(" - Acceleration failed");
    if (connections >= 2 &&
        platform::standardDefaults().get(settings::displayAccelerationConnections))
        return filledFormat(localized("%@ - %lu connections"),
                            {text, QString::number(connections)});
    return text;
}

QString abortedText(const DQDownload& download) {
    const QString text = localized("Aborted");
    if (!download.userSettings().contains(keys::statusCode))
        return text;
    return filledFormat(localized("%@%@%@"), {text, links::spacedDashString(),
                                              download.userSettings().string(keys::statusCode)});
}

QString doneText(DQDownload& download) {
    return filledFormat(localized("%@%@%@"),
                        {localized("Complete"), links::spacedDashString(),
                         links::fuzzyDescription(download.doneDate(), wallNow())});
}

QString percentText(const DQDownload& download) {
    const auto percent = static_cast<int>(download.downloadCompletionFraction() * 100);
    return localized("Downloading: %ld%%")
        .replace(u"%ld"_s, QString::number(percent))
        .replace(u"%%"_s, u"%"_s);
}

QString waitingText(const DQDownload& download, bool live) {
    if (live && DQDownload::queuedDownloads().size() >= 2) {
        if (const QString place = download.queueIndexDescription(); !place.isNull())
            return filledFormat(localized("Waiting: #%@"), {place});
    }
    return localized("Waiting");
}

QString stoppedText(const DQDownload& download, bool live) {
    QString text = localized("Pending");
    if (download.userSettings().contains(keys::responseURL))
        text = download.isInterrupted() ? localized("Interrupted") : localized("Paused");
    return live ? text + download.pausedHostDescription() : text;
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

QString anonymizedHost(const QString& host) {
    return platform::standardDefaults().get(settings::privateDownloading)
               ? links::anonymizedStringPreservingExtension(host, true, false)
               : host;
}

}  // namespace

ProgressTexts progressTexts(const DQDownload& download) {
    const OverallFigures figures = download.transfer().figures();
    if (figures.expected < 1)
        return {};
    const auto span = figures.downloaded > 0
                          ? download.transfer().speed().span(monotonicNow(), figures.downloaded,
                                                             download.dates().downloadDate())
                          : std::nullopt;
    if (!span)
        return {bytesText(figures), {}, {}};
    return {bytesText(figures), sizeText(shownRate(*span)), timeLeftText(figures, *span)};
}

QString progressText(const DQDownload& download) {
    const ProgressTexts texts = progressTexts(download);
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

QString statusText(DQDownload& download, bool live) {
    switch (download.status()) {
        case DQDownloadStatusAborted:
            return abortedText(download);
        case DQDownloadStatusDone:
            return doneText(download);
        case DQDownloadStatusDownloading:
            return live ? download.downloadProgressDescription() : percentText(download);
        case DQDownloadStatusQueued:
        case DQDownloadStatusPaused:
            break;
    }
    const QString text = download.status() == DQDownloadStatusQueued ? waitingText(download, live)
                                                                     : stoppedText(download, live);
    return live && !download.userSettings().contains(keys::responseURL) ? decorated(text, download)
                                                                        : text;
}

QString queueIndexText(const DQDownload& download) {
    const QueueAdmission::Position position =
        QueueAdmission::shared().positionOfQueuedDownload(download);
    if (position.index == notFound)
        return {};
    if (!position.host)
        return filledFormat(localized("%lu"), {QString::number(position.index + 1)});
    return filledFormat(localized("%lu @ %@"),
                        {QString::number(position.hostIndex + 1), anonymizedHost(*position.host)});
}

QString pausedHostText(const DQDownload& download) {
    const QString& host = download.queueRelevantHost();
    if (QueueAdmission::shared().numberOfConcurrentDownloadsPerHost() < 1 || host.isEmpty())
        return {};
    return QueueAdmission::shared().hasPausedDownloadsOfOtherHosts(host)
               ? u" @ "_s + anonymizedHost(host)
               : QString();
}

}  // namespace engine
