#pragma once

#include <QString>
#include <map>
#include <optional>
#include <vector>

#include "engine/download_manager.h"
#include "engine/status.h"

namespace engine {

/// Which queued downloads start, and where in line the others stand: one queue in the manager's
/// order, a limit on the whole and a limit for each host.
///
/// Whatever frees a slot or adds a candidate asks for a pass. Passes run on the main loop and never
/// inside their caller, so that a batch of changes costs one. Main thread; one for the process.
class QueueAdmission {
public:
    [[nodiscard]] static QueueAdmission& shared();

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
    [[nodiscard]] const std::vector<DownloadPtr>& queuedDownloads();
    [[nodiscard]] const std::vector<DownloadPtr>& downloadingDownloads();
    void invalidateQueuedAndDownloadingDownloads();

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

private:
    using Hosts = std::map<QString, std::vector<const DQDownload*>>;
    struct Lists {
        std::vector<DownloadPtr> queued, downloading;
    };

    const Lists& populateQueuedAndDownloadingDownloads();
    void startEligibleQueuedDownloadsAndResetTimer();
    static qint64 addDownload(const DQDownload& download, Hosts& hosts);

    std::optional<Lists> lists_;
};

}  // namespace engine
