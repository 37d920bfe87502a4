#include "engine/queue/queue_admission.h"

#include <algorithm>
#include <utility>

#include "engine/environment.h"
#include "engine/queue/download_queue.h"
#include "engine/settings.h"
#include "platform/base/user_defaults.h"

namespace engine {
namespace {

constexpr qint64 unlimitedSlots = 0x7fffffff;

}  // namespace

QueueAdmission::QueueAdmission(DownloadQueue& queue) : queue_(queue), pass_(queue.context().loop) {}

QueueAdmission::~QueueAdmission() = default;

qint64 QueueAdmission::numberOfConcurrentDownloads() const {
    return queue_.context().defaults.get(settings::numberOfConcurrentDownloads);
}

qint64 QueueAdmission::numberOfConcurrentDownloadsPerHost() const {
    return queue_.context().defaults.get(settings::numberOfConcurrentDownloadsPerHost);
}

void QueueAdmission::setNumberOfConcurrentDownloads(qint64 number) {
    queue_.context().defaults.set(settings::numberOfConcurrentDownloads, number);
    if (!queuedDownloads().empty())
        startEligibleQueuedDownloadsWithTimer();
}

void QueueAdmission::setNumberOfConcurrentDownloadsPerHost(qint64 number) {
    queue_.context().defaults.set(settings::numberOfConcurrentDownloadsPerHost, number);
    if (!queuedDownloads().empty())
        startEligibleQueuedDownloadsWithTimer();
}

qint64 QueueAdmission::numberOfOpenDownloadSlots() {
    const qint64 limit = numberOfConcurrentDownloads();
    return limit < 1 ? unlimitedSlots : limit - static_cast<qint64>(downloadingDownloads().size());
}

QueueAdmission::PerHostChoice QueueAdmission::numberOfConcurrentDownloadsPerHostSelector(
    const std::vector<qint64>& tags) const {
    const qint64 limit = numberOfConcurrentDownloads();
    const qint64 perHost = numberOfConcurrentDownloadsPerHost();
    PerHostChoice choice;
    for (const qint64 tag : tags)
        choice.enabled.push_back(limit < 1 || (tag >= 1 && tag <= limit));
    choice.selectedTag = limit >= 1 && limit < perHost ? limit : perHost;
    return choice;
}

const std::deque<DownloadPtr>& QueueAdmission::queuedDownloads() {
    return populateQueuedAndDownloadingDownloads().queued;
}

const std::vector<DownloadPtr>& QueueAdmission::downloadingDownloads() {
    return populateQueuedAndDownloadingDownloads().downloading;
}

QueueAdmission::Lists& QueueAdmission::populateQueuedAndDownloadingDownloads() {
    if (!lists_) {
        lists_ = std::make_unique<Lists>();
        std::size_t place = 0;
        for (const DownloadPtr& download : queue_.downloads()) {
            if (download->status() == DQDownloadStatusPaused)
                lists_->pausedHosts.insert(download->queueRelevantHost());
            else if (download->status() == DQDownloadStatusQueued)
                lists_->queued.push_back(download);
            else if (download->status() == DQDownloadStatusDownloading)
                lists_->downloading.push_back(download);
            else
                continue;
            lists_->order[download.get()] = place++;
        }
    }
    return *lists_;
}

void QueueAdmission::invalidateQueuedAndDownloadingDownloads() {
    lists_.reset();
}

/// A queue that runs by itself does nothing but start and end downloads, and looking through all of
/// it each time would cost the square of its length.
void QueueAdmission::followStatus(const StatusChange& change) {
    const bool isFollowed =
        change.after == change.before ||
        (change.before == DQDownloadStatusQueued && change.after == DQDownloadStatusDownloading &&
         followStart(change.download)) ||
        (change.before == DQDownloadStatusDownloading &&
         matchesStatusMask(change.after, finishedStatuses) && followEnd(change.download));
    if (!isFollowed)
        invalidateQueuedAndDownloadingDownloads();
}

/// A pass is wanted where a place has become free or a candidate has come.
void QueueAdmission::statusDidChange(const StatusChange& change) {
    if (lists_)
        followStatus(change);
    if (change.after == DQDownloadStatusQueued ||
        (matchesStatusMask(change.before, activeStatuses) &&
         !matchesStatusMask(change.after, activeStatuses)))
        startEligibleQueuedDownloadsWithTimer();
}

bool QueueAdmission::followStart(const DQDownload& download) {
    auto& [queued, downloading, order, pausedHosts, places, hostsInQueue] = *lists_;
    const auto started = std::find_if(queued.begin(), queued.end(),
                                      [&](const auto& other) { return other.get() == &download; });
    if (started == queued.end())
        return false;
    const auto isBefore = [&order = order](const DownloadPtr& one, const DownloadPtr& other) {
        return order.at(one.get()) < order.at(other.get());
    };
    downloading.insert(std::lower_bound(downloading.begin(), downloading.end(), *started, isBefore),
                       *started);
    queued.erase(started);
    places.clear();
    return true;
}

bool QueueAdmission::followEnd(const DQDownload& download) {
    return std::erase_if(lists_->downloading,
                         [&](const DownloadPtr& other) { return other.get() == &download; }) == 1;
}

void QueueAdmission::startEligibleQueuedDownloadsWithTimer() {
    pass_.startUnlessActive(0, [this] { startEligibleQueuedDownloadsAndResetTimer(); });
}

void QueueAdmission::startEligibleQueuedDownloadsAndResetTimer() {
    constexpr platform::Seconds retryInterval = 1;
    if (queue_.context().environment.isModalWindowUp())
        pass_.start(retryInterval, [this] { startEligibleQueuedDownloadsAndResetTimer(); });
    else
        startEligibleQueuedDownloads();
}

qint64 QueueAdmission::addDownload(const DQDownload& download, Hosts& hosts) {
    const QString& host = download.queueRelevantHost();
    if (host.isEmpty())
        return notFound;
    return hosts[host]++;
}

const QueueAdmission::Lists& QueueAdmission::listsWithPlaces() {
    Lists& lists = populateQueuedAndDownloadingDownloads();
    if (lists.places.empty()) {
        Hosts hosts;
        qint64 index = 0;
        for (const DownloadPtr& download : lists.queued)
            lists.places[download.get()] = {index++, addDownload(*download, hosts)};
        lists.hostsInQueue = hosts.size();
    }
    return lists;
}

QueueAdmission::Position QueueAdmission::positionOfQueuedDownload(const DQDownload& download) {
    const Lists& lists = listsWithPlaces();
    const auto found = lists.places.find(&download);
    if (found == lists.places.end())
        return {};
    const Place& place = found->second;
    Position position{place.index, std::nullopt, notFound};
    if (numberOfConcurrentDownloadsPerHost() < 1)
        return position;
    position.hostIndex = place.hostIndex;
    // With one host for all, its name says nothing.
    if (lists.hostsInQueue != 1 && place.hostIndex != notFound)
        position.host = download.queueRelevantHost();
    return position;
}

bool QueueAdmission::hasPausedDownloadsOfOtherHosts(const QString& queueRelevantHost) {
    const QSet<QString>& hosts = populateQueuedAndDownloadingDownloads().pausedHosts;
    return hosts.size() > (hosts.contains(queueRelevantHost) ? 1 : 0);
}

/// Slots are compared with zero and nothing else: a limit lowered below the number that runs leaves
/// them negative, and then all start that the limit for their host allows.
void QueueAdmission::startEligibleQueuedDownloads() {
    const qint64 perHost = numberOfConcurrentDownloadsPerHost();
    qint64 slots = numberOfOpenDownloadSlots();
    Hosts hosts;
    for (const DownloadPtr& download : downloadingDownloads())
        addDownload(*download, hosts);
    std::vector<DownloadPtr> eligible;
    for (const DownloadPtr& download : queuedDownloads()) {
        if (slots == 0)
            break;
        const QString& host = download->queueRelevantHost();
        if (perHost >= 1 && !host.isEmpty()) {
            if (const auto used = hosts.find(host); used != hosts.end() && used->second >= perHost)
                continue;
            addDownload(*download, hosts);
        }
        eligible.push_back(download);
        --slots;
    }
    for (const DownloadPtr& download : eligible)
        download->startDownloadWithURL(std::nullopt, false);
}

}  // namespace engine
