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

/// Of the address that the download begins at.
QString serverOf(const DQDownload& download) {
    return download.URL().host().toLower();
}

/// A page that is read is one, too.
qint64 openConnectionsOf(const DQDownload& download) {
    const Transfer::Workers& workers = download.workers();
    const auto running = std::count_if(workers.begin(), workers.end(), [](const auto& worker) {
        return worker->status() == DQDownloadWorkerStatusRunning;
    });
    const bool isBeingFinished = workers.empty() && !download.isGettingDownloadPageSource();
    return isBeingFinished ? 0 : std::max<qint64>(1, running);
}

}  // namespace

QueueAdmission::QueueAdmission(DownloadQueue& queue)
    : queue_(queue), pass_(queue.context().loop), hostRelease_(queue.context().loop) {}

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

void QueueAdmission::Lists::addQueued(const DownloadPtr& download) {
    queued.push_back(download);
    ++queuedOfHosts[download->queueRelevantHost()];
}

QueueAdmission::Lists& QueueAdmission::populateQueuedAndDownloadingDownloads() {
    if (!lists_) {
        lists_ = std::make_unique<Lists>();
        std::size_t place = 0;
        for (const DownloadPtr& download : queue_.downloads()) {
            if (download->status() == DQDownloadStatusPaused)
                lists_->pausedHosts.insert(download->queueRelevantHost());
            else if (download->status() == DQDownloadStatusQueued)
                lists_->addQueued(download);
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
    std::deque<DownloadPtr>& queued = lists_->queued;
    std::vector<DownloadPtr>& downloading = lists_->downloading;
    const auto started = std::find_if(queued.begin(), queued.end(),
                                      [&](const auto& other) { return other.get() == &download; });
    if (started == queued.end())
        return false;
    const auto isBefore = [&order = lists_->order](const DownloadPtr& one,
                                                   const DownloadPtr& other) {
        return order.at(one.get()) < order.at(other.get());
    };
    downloading.insert(std::lower_bound(downloading.begin(), downloading.end(), *started, isBefore),
                       *started);
    --lists_->queuedOfHosts[download.queueRelevantHost()];
    queued.erase(started);
    lists_->places.clear();
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
    Hosts opened;
    std::vector<DownloadPtr> eligible;
    // Those that are left to look at, and of each host. A long queue of few hosts ends where none
    // of them has a place.
    const std::deque<DownloadPtr>& queued = queuedDownloads();
    auto left = static_cast<qint64>(queued.size());
    Hosts leftOfHosts = lists_->queuedOfHosts;
    for (const DownloadPtr& download : queued) {
        if (slots == 0 || left <= 0)
            break;
        const QString& host = download->queueRelevantHost();
        qint64& leftOfHost = leftOfHosts[host];
        if (perHost >= 1 && !host.isEmpty()) {
            if (const auto used = hosts.find(host);
                used != hosts.end() && used->second >= perHost) {
                left -= std::exchange(leftOfHost, 0);
                continue;
            }
        }
        --left;
        --leftOfHost;
        if (download->isHeldBack())
            continue;
        if (!hasRoom(*download, opened))
            continue;
        addDownload(*download, hosts);
        eligible.push_back(download);
        --slots;
    }
    // A start may ask the user, who can do anything meanwhile.
    for (const DownloadPtr& download : eligible) {
        if (download->status() == DQDownloadStatusQueued && !download->isBeingRemoved())
            download->startDownloadWithURL(std::nullopt, false);
    }
    passWhenHostIsReleased();
}

void QueueAdmission::serverDidRefuse(const DQDownload& download, const Refusal& refusal) {
    const QString host = serverOf(download);
    qint64 others = 0;
    bool isServing = false;
    for (const DownloadPtr& other : downloadingDownloads()) {
        if (serverOf(*other) != host)
            continue;
        for (const auto& worker : other->workers()) {
            const bool isOther = worker.get() != &refusal.worker &&
                                 worker->status() == DQDownloadWorkerStatusRunning;
            others += isOther ? 1 : 0;
            isServing = isServing || (isOther && worker->isServed());
        }
    }
    const platform::Seconds now = queue_.context().monotonicNow();
    hostLimits_.noteRefusal(host, others, now);
    if (isServing)
        hostLimits_.noteService(host, now);
    if (refusal.told)
        hostLimits_.hold(host, now + *refusal.told);
    else if (!isServing)  // Else the next one waits for a connection that it serves to end.
        hostLimits_.pause(host, now + refusal.pause);
    passWhenHostIsReleased();
}

void QueueAdmission::releaseServer(const DQDownload& download) {
    hostLimits_.release(serverOf(download));
}

void QueueAdmission::connectionDidEnd(const DQDownload& download) {
    if (hostLimits_.isEmpty())
        return;
    hostLimits_.noteService(serverOf(download), queue_.context().monotonicNow());
    startEligibleQueuedDownloadsWithTimer();
}

void QueueAdmission::passWhenHostIsReleased() {
    const platform::Seconds now = queue_.context().monotonicNow();
    if (const auto end = hostLimits_.nextEnd(now))
        hostRelease_.start(*end - now, [this] { startEligibleQueuedDownloadsWithTimer(); });
}

qint64 QueueAdmission::openConnections(const QString& host, const DQDownload* except) {
    qint64 open = 0;
    for (const DownloadPtr& download : downloadingDownloads()) {
        if (download.get() != except && serverOf(*download) == host)
            open += openConnectionsOf(*download);
    }
    return open;
}

qint64 QueueAdmission::connectionsFor(const DQDownload& download) {
    const QString host = serverOf(download);
    const auto most = hostLimits_.connections(host);
    return most ? std::max<qint64>(1, *most - openConnections(host, &download)) : unlimitedSlots;
}

/// `opened`: by this pass, of hosts that serve only so many.
bool QueueAdmission::hasRoom(const DQDownload& download, Hosts& opened) {
    if (hostLimits_.isEmpty())
        return true;
    const QString host = serverOf(download);
    if (hostLimits_.remaining(host, queue_.context().monotonicNow()) > 0)
        return false;
    const auto most = hostLimits_.connections(host);
    if (!most)
        return true;
    const auto [connections, isFirst] = opened.try_emplace(host, 0);
    if (isFirst)
        connections->second = openConnections(host, nullptr);
    return connections->second < *most && ++connections->second > 0;
}

std::optional<QueueAdmission::HostWait> QueueAdmission::hostWait(const DQDownload& download) {
    if (hostLimits_.isEmpty() || download.status() != DQDownloadStatusQueued)
        return std::nullopt;
    const QString host = serverOf(download);
    const platform::Seconds remaining =
        hostLimits_.remaining(host, queue_.context().monotonicNow());
    const auto most = hostLimits_.connections(host);
    if (remaining <= 0 && (!most || openConnections(host, nullptr) < *most))
        return std::nullopt;
    return HostWait{host, remaining};
}

std::vector<DownloadPtr> QueueAdmission::refusedDownloads() {
    std::vector<DownloadPtr> refused;
    if (!hostLimits_.nextEnd(queue_.context().monotonicNow()))
        return refused;
    for (const DownloadPtr& download : queuedDownloads()) {
        if (download->wasRefused() && hostWait(*download))
            refused.push_back(download);
    }
    return refused;
}

}  // namespace engine
