#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <vector>

#include "platform/base/clock.h"
#include "platform/net/url.h"

namespace engine {

class DQDownload;
using DownloadPtr = std::shared_ptr<DQDownload>;

/// What the engine asks of the owner of the queue. Main thread.
class DQDownloadManager {
public:
    virtual ~DQDownloadManager() = default;

    /// Every download that exists, in queue order: the collection itself. Whoever starts, stops or
    /// removes downloads during a walk must walk over a copy.
    [[nodiscard]] virtual const std::vector<DownloadPtr>& downloads() const = 0;

    /// The rules, in their order: dictionaries with "Hosts", "Extensions" (lists of strings),
    /// "Downloads Folder" and "Application" (strings), each of them optional.
    [[nodiscard]] virtual const QVariantList& specialCases() const = 0;

    /// A download has changed. A finished one may be made to vanish, after `vanishInterval`
    /// seconds, and may be gone from the queue when this returns.
    virtual void updateDownload(DQDownload& download, bool forceDisplay, bool forceVanish,
                                platform::Seconds vanishInterval) = 0;
    void updateDownload(DQDownload& download, bool forceDisplay = false) {
        updateDownload(download, forceDisplay, false, 3.0);
    }
    /// It is at another status now. Called at once, in the middle of whatever changes it.
    virtual void statusDidChange(const DQDownload& download) { static_cast<void>(download); }
    /// How a row looks has changed for reasons outside its download.
    virtual void updateDownloadListDisplay() = 0;

    virtual void invalidateLongTermNumberOfQueuedOrDownloadingDownloads() = 0;
    virtual void decrementLongTermNumberOfQueuedOrDownloadingDownloads() = 0;

    /// The user removed this download: its end is not to be announced as the end of all work.
    virtual void disableAllDoneNotificationForDownload(DQDownload& download) = 0;
    /// Takes it out of the queue; nothing happens if it is not in it.
    virtual void removeDownload(DQDownload& download) = 0;
    /// Makes a download of each address. `pageChain`: the download pages that led to it, the one
    /// that it was found on last.
    virtual void openURLsOfPage(const std::vector<platform::Url>& urls,
                                const QStringList& pageChain) = 0;
};

/// The manager as installed by the composition root or by a test. Installing forgets what was
/// remembered about the queue of the one before; nullptr takes it away.
[[nodiscard]] DQDownloadManager& mainController();
void installMainController(DQDownloadManager* manager);
[[nodiscard]] bool hasMainController();

}  // namespace engine
