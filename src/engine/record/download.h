#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <deque>
#include <memory>
#include <optional>
#include <vector>

#include "engine/record/status.h"
#include "engine/workers/download_worker_delegate.h"
#include "platform/base/clock.h"
#include "platform/base/error.h"
#include "platform/net/url.h"

namespace engine {

class DQDownload;
class DownloadDates;
class DownloadFinisher;
class DownloadIdentity;
class DownloadPaths;
class Transfer;
class UserSettings;
class VanishView;

using DownloadPtr = std::shared_ptr<DQDownload>;

/// One download, from the moment its address enters the queue until it is a file on disk or has
/// been given up: record, state machine and the delegate of its workers.
///
/// The queue owns its records. Two records are equal only if they are the same object. The work
/// is done by collaborators with files of their own; this class is what the rest of the program
/// sees of them. Main thread.
class DQDownload final : public DQDownloadWorkerDelegate,
                         public std::enable_shared_from_this<DQDownload> {
public:
    /// Null if the text is no URL.
    [[nodiscard]] static DownloadPtr downloadWithURLString(const QString& urlString,
                                                           bool addToQueue);
    /// A new record, queued or else paused. Null if there is no URL.
    [[nodiscard]] static DownloadPtr downloadWithURL(const std::optional<platform::Url>& url,
                                                     bool addToQueue);
    ~DQDownload() override;
    DQDownload(const DQDownload&) = delete;
    DQDownload& operator=(const DQDownload&) = delete;

    /// For log lines: names it as the rows would, unless debug logging is on.
    [[nodiscard]] QString description() const;

    // Address. Once done, it is the file URL of the finished file.

    [[nodiscard]] const platform::Url& URL() const;
    [[nodiscard]] QString URLString() const;
    [[nodiscard]] QString originalURLString() const;
    [[nodiscard]] QString comparisonURLString() const;
    void setURL(const platform::Url& url);
    /// Whether the address is a page to be read for the real one; kept until the address changes
    /// or `reevaluateDownloadPageURLStatus`.
    [[nodiscard]] bool isDownloadPageURL() const;
    void reevaluateDownloadPageURLStatus();
    /// A setting by which names are made has changed.
    void invalidateIconAndNameCache();
    /// The host as the limits count it: in lower case, and the last two labels of a longer name.
    [[nodiscard]] const QString& queueRelevantHost() const;

    // Names.

    void setName(const QString& name);
    [[nodiscard]] QString name() const;
    /// What a row shows, which may be hidden or a location.
    [[nodiscard]] QString displayName() const;
    [[nodiscard]] QString anonymizedName() const;
    [[nodiscard]] QString sortName() const;
    [[nodiscard]] QString locationKey() const;
    /// The extension whose icon stands for the file, without its dot; a name without one has a
    /// pseudo extension. Nothing: the icon is hidden.
    [[nodiscard]] std::optional<QString> icon() const;
    [[nodiscard]] bool isMatchForSearchStrings(const QStringList& strings, bool checkURL) const;

    // Rules.

    /// Whether the pattern's labels are the last ones of the host's.
    [[nodiscard]] static bool hostComponents(const QStringList& pattern,
                                             const QStringList& matchComponents);
    [[nodiscard]] bool hasHostFromArray(const QStringList& hosts) const;
    [[nodiscard]] bool hasExtensionFromArray(const QStringList& extensions) const;
    [[nodiscard]] bool matchesSpecialCase(const QVariantMap& rule) const;

    // Dates.

    /// When it was added. With true, read again from the settings.
    [[nodiscard]] QDateTime date() const;
    QDateTime invalidateDate(bool reload);
    /// When it was done; the first reading fixes it.
    [[nodiscard]] QDateTime doneDate();

    // What survives a restart.

    [[nodiscard]] UserSettings& userSettings();
    [[nodiscard]] const UserSettings& userSettings() const;
    /// One element of the queue file. With `writeMetadataToDownloadBundle` also writes what an
    /// .orlop folder needs to be opened by itself, if the partial file lies in one.
    QVariantMap userSettingsArchiveWithPausedStatus(bool paused,
                                                    bool writeMetadataToDownloadBundle);
    void userSettingsFromArchive(const QVariantMap& archive);

    // Paths; empty where there is none.

    /// The finished file, found again if it was moved. With `check`, only if it exists.
    [[nodiscard]] QString pathByCheckingExistence(bool check);
    [[nodiscard]] QString path();
    [[nodiscard]] bool fileExists();
    [[nodiscard]] QString pathToReveal();
    /// The .orlop folder of the partial file.
    [[nodiscard]] QString downloadContainerPath();
    /// For a record that is restored. A path where no partial data of ours can lie is not taken: it
    /// comes from a file that anybody may have written, and partial data is deleted.
    void setIntermediateDownloadTargetPath(const QString& path);
    [[nodiscard]] QString intermediateDownloadTargetPath();
    [[nodiscard]] QString downloadBasePath();
    [[nodiscard]] QString finalDownloadTargetPath();

    // Life.

    [[nodiscard]] DQDownloadStatus status() const { return _status; }
    /// Stopped by a failure and not by the user.
    [[nodiscard]] bool isInterrupted() const { return _isInterrupted; }
    /// Why the last transfer failed. Nothing: it did not, or another has begun.
    [[nodiscard]] const std::optional<platform::Error>& lastError() const { return lastError_; }
    [[nodiscard]] bool isBeingRemoved() const { return _isBeingRemoved; }
    [[nodiscard]] bool autoResumeAfterSleep() const { return _autoResumeAfterSleep; }
    void setAutoResumeAfterSleep(bool resume) { _autoResumeAfterSleep = resume; }

    /// Starts at once, past the queue and its limits.
    void startDownload();
    /// Starts at the address given, or at its own. `extractedFromDownloadPage`: the address (or
    /// none) is what reading a page gave.
    void startDownloadWithURL(const std::optional<platform::Url>& url,
                              bool extractedFromDownloadPage);
    /// Only from paused.
    void addToQueue();
    /// Only from queued or downloading.
    void pause();
    void togglePause();
    void remove();
    void removeAndMoveToTrash();
    void removeAndMoveToTrashIfDone(bool moveToTrash);

    // Acceleration.

    /// Whether files of this host are fetched over several connections.
    [[nodiscard]] bool accelerates() const;
    /// Turns it the other way for the host.
    void toggleAcceleration();

    // Figures and texts.

    /// 0 to 1; 0 unless downloading or done.
    [[nodiscard]] double downloadCompletionFraction() const;
    [[nodiscard]] QString downloadProgressDescription() const;
    /// `live` for a row that is being drawn.
    [[nodiscard]] QString statusDescriptionWithLiveDetails(bool live);
    /// The place in the queue, or null.
    [[nodiscard]] QString queueIndexDescription() const;
    /// Names the host if paused downloads of several hosts are there, else null.
    [[nodiscard]] QString pausedHostDescription() const;

    // Row.

    [[nodiscard]] unsigned highlightedActionButtonIndex() const {
        return _highlightedActionButtonIndex;
    }
    void setHighlightedActionButtonIndex(unsigned index) { _highlightedActionButtonIndex = index; }
    [[nodiscard]] bool canPerformActionWithIndex(unsigned index);
    void performActionWithIndex(unsigned index);
    void open();
    void reveal();
    void openOriginalURL();
    void copyOriginalURL();
    void copyPath();

    /// Takes the row out of the view in timed steps and then the record out of the queue; at once
    /// if there is no view or animations are off.
    void vanishInView(const std::shared_ptr<VanishView>& view, platform::Seconds delay);
    [[nodiscard]] bool isVanishing() const;
    void performVanishStep();
    /// How far the row has faded, from 0; -1 if it is not vanishing.
    [[nodiscard]] double vanishFraction() const;
    /// The share of the row's height that is left; -1 if it has not begun to collapse.
    [[nodiscard]] double vanishRowHeightFraction() const;

    // The queue as a whole; see QueueAdmission.

    [[nodiscard]] static const std::deque<DownloadPtr>& queuedDownloads();
    [[nodiscard]] static const std::vector<DownloadPtr>& downloadingDownloads();
    /// To be called after every change of queue order, and of status to or from queued or
    /// downloading.
    static void invalidateQueuedAndDownloadingDownloads();
    /// Arranges for one pass at the next turn of the main loop.
    static void startEligibleQueuedDownloadsWithTimer();

    // Reports of the workers.

    [[nodiscard]] QString targetPathForDownloadWorker(
        const DQDownloadWorkerPrototype& worker) override;
    void resetProgressForDownloadWorker(DQDownloadWorkerPrototype& worker) override;
    void downloadWorkerDidReceiveResponse(DQDownloadWorkerPrototype& worker,
                                          const WorkerResponse& response) override;
    void downloadWorkerDidReceiveBytes(DQDownloadWorkerPrototype& worker, qint64 count) override;
    void downloadWorkerDidFail(DQDownloadWorkerPrototype& worker,
                               const platform::Error& error) override;
    void downloadWorkerDidFinish(DQDownloadWorkerPrototype& worker) override;

    // For the collaborators of this folder.

    [[nodiscard]] DownloadIdentity& identity() const;
    [[nodiscard]] DownloadDates& dates() const;
    [[nodiscard]] DownloadPaths& paths() const;
    [[nodiscard]] Transfer& transfer() const;
    [[nodiscard]] DownloadFinisher& finisher() const;
    void setStatus(DQDownloadStatus status);
    void setIsInterrupted(bool interrupted) { _isInterrupted = interrupted; }
    void setIsBeingRemoved(bool removed) { _isBeingRemoved = removed; }
    void setLastError(std::optional<platform::Error> error) { lastError_ = std::move(error); }

private:
    struct Parts;

    explicit DQDownload(const platform::Url& url);

    std::unique_ptr<Parts> parts_;
    std::optional<platform::Error> lastError_;
    unsigned _highlightedActionButtonIndex = 0;
    DQDownloadStatus _status = DQDownloadStatusPaused;
    bool _isInterrupted = false;
    bool _autoResumeAfterSleep = false;
    bool _isBeingRemoved = false;
};

}  // namespace engine
