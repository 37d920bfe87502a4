#pragma once

#include <QSet>
#include <QString>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "engine/lifecycle/status_change.h"
#include "engine/queue/host_limits.h"
#include "engine/record/status.h"
#include "platform/base/timer.h"

namespace engine {

class DownloadQueue;
struct Refusal;
using DownloadPtr = std::shared_ptr<DQDownload>;

/// Which queued downloads start, and where in line the others stand: one queue in the manager's
/// order, a limit on the whole and a limit for each host.
///
/// Whatever frees a slot or adds a candidate asks for a pass. Passes run on the main loop and never
/// inside their caller, so that a batch of changes costs one. A part of its queue; main thread.
class QueueAdmission {
public:
    explicit QueueAdmission(DownloadQueue& queue);
    ~QueueAdmission();

    /// 0: no limit.
    [[nodiscard]] qint64 numberOfConcurrentDownloads() const;
    /// Below 1: no limit.
    [[nodiscard]] qint64 numberOfConcurrentDownloadsPerHost() const;
    void setNumberOfConcurrentDownloads(qint64 number);
    void setNumberOfConcurrentDownloadsPerHost(qint64 number);
    /// Below 0 when more run than a limit lowered in the meantime allows.
    [[nodiscard]] qint64 numberOfOpenDownloadSlots();

    /// What a choice of limits per host looks like beside the overall limit.
    struct PerHostChoice {
        std::vector<bool> enabled;  ///< One for each tag.
        qint64 selectedTag = 0;
    };
    [[nodiscard]] PerHostChoice numberOfConcurrentDownloadsPerHostSelector(
        const std::vector<qint64>& tags) const;

    /// In queue order.
    [[nodiscard]] const std::deque<DownloadPtr>& queuedDownloads();
    [[nodiscard]] const std::vector<DownloadPtr>& downloadingDownloads();
    void invalidateQueuedAndDownloadingDownloads();
    void statusDidChange(const StatusChange& change);

    /// Held back, and tried again each second, while a modal window is up.
    void startEligibleQueuedDownloadsWithTimer();

    /// Where a download stands among those that wait.
    struct Position {
        qint64 index = notFound;      ///< In the queue.
        std::optional<QString> host;  ///< Only if downloads of several hosts wait.
        qint64 hostIndex = notFound;  ///< Among those of its host.
    };
    [[nodiscard]] Position positionOfQueuedDownload(const DQDownload& download);
    void startEligibleQueuedDownloads();

    // What servers have a place for, see DownloadHost. Hosts are those of the addresses.

    void serverDidRefuse(const DQDownload& download, const Refusal& refusal);
    void releaseServer(const DQDownload& download);
    void connectionDidEnd(const DQDownload& download);
    [[nodiscard]] qint64 connectionsFor(const DQDownload& download);
    /// Why a queued download waits though it may be its turn.
    struct HostWait {
        QString host;
        /// Until the host may be asked again; 0: until one of its connections is free.
        platform::Seconds remaining = 0;
    };
    /// Nothing: its host does not keep it waiting.
    [[nodiscard]] std::optional<HostWait> hostWait(const DQDownload& download);
    /// The queued downloads that their servers have refused, and that wait for a time.
    [[nodiscard]] std::vector<DownloadPtr> refusedDownloads();

    /// Whether paused downloads of another host than this one are there.
    [[nodiscard]] bool hasPausedDownloadsOfOtherHosts(const QString& queueRelevantHost);

private:
    using Hosts = std::map<QString, qint64>;
    struct Place {
        qint64 index = 0;
        qint64 hostIndex = notFound;
    };
    /// What one walk over all downloads finds; kept until the next change that is not followed.
    struct Lists {
        std::deque<DownloadPtr> queued;
        Hosts queuedOfHosts;
        std::vector<DownloadPtr> downloading;
        /// Of these, the places among all downloads.
        std::unordered_map<const DQDownload*, std::size_t> order;
        QSet<QString> pausedHosts;
        /// Of each queued download, and how many hosts they have. Empty: not worked out yet.
        std::unordered_map<const DQDownload*, Place> places;
        std::size_t hostsInQueue = 0;

        void addQueued(const DownloadPtr& download);
    };

    Lists& populateQueuedAndDownloadingDownloads();
    const Lists& listsWithPlaces();
    void startEligibleQueuedDownloadsAndResetTimer();
    void followStatus(const StatusChange& change);
    [[nodiscard]] bool followStart(const DQDownload& download);
    [[nodiscard]] bool followEnd(const DQDownload& download);
    static qint64 addDownload(const DQDownload& download, Hosts& hosts);
    [[nodiscard]] qint64 openConnections(const QString& host, const DQDownload* except);
    [[nodiscard]] bool hasRoom(const DQDownload& download, Hosts& opened);
    void passWhenHostIsReleased();

    DownloadQueue& queue_;
    platform::Timer pass_;
    HostLimits hostLimits_;
    platform::Timer hostRelease_;
    std::unique_ptr<Lists> lists_;  ///< Null: to be made anew.
};

}  // namespace engine
