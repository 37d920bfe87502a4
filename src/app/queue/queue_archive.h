#pragma once

#include <QHash>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "app/front_end.h"
#include "engine/queue/download_queue.h"
#include "platform/base/error.h"
#include "platform/base/timer.h"
#include "platform/base/user_defaults.h"

namespace app {

class ArchiveWriter;

/// The queue's file: one element for each download that is to survive, in queue order. It is the
/// old or the new one at every moment. Main thread.
class QueueArchive {
public:
    struct Surroundings {
        engine::DownloadQueue& queue;
        const platform::UserDefaults& defaults;
        platform::RunLoop& loop;
        Questions& questions;
        /// Whether a download is on its way out of the queue.
        std::function<bool(const engine::DQDownload&)> isLeaving;
        /// What has left the queue with data that may be wanted back.
        std::function<QVariantList()> removed;
        /// The file could not be understood and was moved here; empty: it could not be moved and
        /// nothing will be written over it.
        std::function<void(const QString& keptPath)> damaged;
        std::function<void(const platform::Error& error)> notWritten;
        /// The last chance to say it. `isEmpty`: there is nothing to save, and the old file stays.
        std::function<void(const platform::Error& error, bool isEmpty)> notSavedAtQuit;
    };

    QueueArchive(QString path, Surroundings surroundings);
    ~QueueArchive();
    QueueArchive(const QueueArchive&) = delete;
    QueueArchive& operator=(const QueueArchive&) = delete;

    /// What the file holds; nothing if there is none.
    [[nodiscard]] std::vector<QVariantMap> read();

    /// Saves the queue as it stands, soon and on another thread. Saving again while that goes on
    /// costs nothing.
    void write();
    /// The same if the file does not know yet where the partial data of this download lies, so
    /// that it is found again after a crash.
    void writeIfBegun(const engine::DQDownload& download);
    /// Pauses what is active, saves, and waits until that is on disk. False: downloads are active
    /// and the user does not want to quit; nothing was changed.
    bool writeBeforeQuitting();
    /// Waits until what was asked for so far is on disk.
    void finish();
    /// Saves the queue as it stands, and calls `saved` when that is on disk, or with false if it
    /// could not be written. Not if the program ends before.
    using Saved = std::function<void(bool isOnDisk)>;
    void whenSaved(Saved saved);

    /// The question of `writeBeforeQuitting` is on the screen.
    [[nodiscard]] bool isShowingQuitWhileDownloadingAlert() const {
        return _isShowingQuitWhileDownloadingAlert;
    }

private:
    struct Cached;
    /// Of the settings, what the form of all elements depends on.
    struct Form {
        bool storesMetadata = false, isPrivate = false;
        bool operator==(const Form&) const = default;
    };
    class QuitPass;

    [[nodiscard]] bool isSaved(const engine::DQDownload& download) const;
    [[nodiscard]] bool goesOn(const engine::DQDownload& download);
    using Elements = std::vector<QByteArray>;
    void save();
    /// Puts together what has changed, a little at a time: a long list that is saved for the first
    /// time, or paused as a whole, must not hold up the main thread. False: there is more.
    [[nodiscard]] bool prepare();
    void handOver(Elements elements);
    [[nodiscard]] Elements elements();
    [[nodiscard]] Form form() const;
    /// Empty: nothing of it survives.
    const QByteArray& elementOf(engine::DQDownload& download, bool paused, const Form& form);
    [[nodiscard]] bool confirmQuit();
    [[nodiscard]] bool leadsToData(const engine::DQDownload& download) const;
    void didWrite(const std::optional<platform::Error>& error);
    void rest();
    void forgetRemovedDownloads();

    const QString path_;
    Surroundings surroundings_;
    platform::Timer rest_;  ///< After a write.
    /// Who waits for the next writing, and for the one that goes on.
    std::vector<Saved> waiting_, beingSaved_;
    std::unique_ptr<ArchiveWriter> writer_;
    std::unordered_map<const engine::DQDownload*, Cached> cache_;
    std::unordered_set<const engine::DQDownload*> pausedForEnd_;  ///< And not gone on since.
    std::size_t prepared_ = 0;                                    ///< Rows that `prepare` has seen.
    /// Data is on the disk that the file does not lead to, and would be fetched again.
    bool isUrgent_ = false;
    platform::Seconds handedOver_ = 0;  ///< When the last write began, on the monotonic scale.
    platform::Seconds written_ = 0;     ///< When it ended.
    bool wantsToBeWritten_ = false;
    bool isQuitting_ = false;  ///< Everything is being paused, and saved right after.
    bool mayWrite_ = true;
    /// What `didWrite` is going to report has been told.
    bool isFailureTold_ = false;
    /// The file that was found could not be read, so what it refers to must stay.
    bool keepsIntermediateFiles_ = false;
    bool _isShowingQuitWhileDownloadingAlert = false;
};

}  // namespace app
