#pragma once

#include <QByteArray>
#include <QString>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "engine/finishing/file_assembly.h"
#include "engine/finishing/finished_file.h"
#include "engine/finishing/verification.h"
#include "engine/workers/download_worker_prototype.h"
#include "platform/base/error.h"

namespace platform {
class Disk;
}

namespace engine {

class DownloadPaths;
class MetadataFile;
class DownloadRecord;
class DQDownloadWorkerPrototype;
class Transfer;
struct ResumePlan;

/// Told what the end of a transfer leads to. Main thread.
class FinishingDelegate {
public:
    /// The whole file lies there now.
    virtual void didFinishWithFile(const QString& path) = 0;
    virtual void didFinishWithoutData() = 0;
    /// What has come stays and can be gone on with.
    virtual void finishingDidFail(const platform::Error& error) = 0;
    /// The whole file has come, and what it adds up to is now being found out.
    virtual void verificationDidBegin() = 0;
    /// It is not the file that was expected; the record's settings say what it adds up to. It stays
    /// where its parts were put together.
    virtual void verificationFoundOtherFile() = 0;
    /// What has come does not fit together.
    virtual void finishingFoundDamage() = 0;
    /// `cancel` has taken effect. `startsAgain`: somebody waits for that.
    virtual void finishingWasCancelled(bool startsAgain) = 0;
    /// A worker is done, but a part is left that no other one could be started for.
    virtual void partIsLeftWithoutWorker(DQDownloadWorkerPrototype& worker,
                                         const platform::Error& error) = 0;

protected:
    ~FinishingDelegate() = default;
};

/// Takes a download whose workers are done to its end.
///
/// The file is put together and synced beside its workers' files, and only then moved to its final
/// path, so that nothing but the whole file is ever seen there. Both happen in the background, with
/// the download still downloading; all else on the main thread.
class DownloadFinisher {
public:
    DownloadFinisher(Transfer& transfer, FinishingDelegate& delegate);
    ~DownloadFinisher() { cancel(); }

    void workerDidFinish(DQDownloadWorkerPrototype& worker);
    /// Goes on with what was cut short at an earlier end.
    void finishPartialData(const ResumePlan& plan);
    /// The file is at its final path already, all of it.
    void adoptFinishedFile(const QString& path);

    /// Work is going on in the background, even if it has been cancelled.
    [[nodiscard]] bool isBusy() const { return job_ != nullptr; }
    /// The file is whole and is being compared with its checksum.
    [[nodiscard]] bool isVerifying() const { return job_ && job_->isVerifying; }
    void cancel();
    /// The same for a download that leaves its queue: it lives until the work has ended, which may
    /// have to be undone.
    void cancelForGood();
    /// Starts the download once the work that was cancelled has ended.
    void startWhenIdle() { startsWhenIdle_ = job_->isCancelled; }

private:
    struct Job {
        std::vector<FilePiece> pieces;
        QByteArray body;  ///< In place of pieces: the whole file, which lies in no file yet.
        std::shared_ptr<DownloadRecord> keptRecord;  ///< Null: it stays in its queue.
        FileOrigin origin;
        std::shared_ptr<MetadataFile> metadata;
        platform::Disk* disk = nullptr;  ///< That of the pieces.
        bool hasUserChosenPath = false;
        int attempts = 0;
        bool isInPlace = false;               ///< The one piece has journals.
        std::optional<Checksum> expected;     ///< Nothing: the file is taken as it is.
        std::shared_ptr<SumReader> begunSum;  ///< What was read while it came. Null: nothing.
        bool isVerifying = false;
        std::atomic<bool> isCancelled = false;

        // Of the background, until it reports.
        AssemblyResult assembly;
        FileSum sum;
        bool wasMoveTried = false;
        QString target;
        std::optional<platform::Error> moveError;

        void assemble();
        void moveToTarget();
        void placeBody();
    };

    [[nodiscard]] std::vector<FilePiece> piecesOfWorkers() const;
    [[nodiscard]] bool areInPlace() const;
    [[nodiscard]] bool isWholeFile(const DQDownloadWorkerPrototype& worker) const;
    void conclude(std::vector<FilePiece> pieces);
    [[nodiscard]] bool hasRightLength(const std::vector<FilePiece>& pieces) const;
    void handleWrongLength(const std::vector<FilePiece>& pieces);
    void place(const QByteArray& body);
    void didPlace(const std::shared_ptr<Job>& job);
    [[nodiscard]] std::optional<platform::Error> writePartialFile(const QByteArray& body);
    bool keepBody(const QByteArray& body);
    void concludeThroughPartialFile(const QByteArray& body);
    void beginJob();
    void assemble(std::vector<FilePiece> pieces);
    void didAssemble(const std::shared_ptr<Job>& job);
    void verify(const std::shared_ptr<Job>& job);
    void didVerify(const std::shared_ptr<Job>& job);
    void move(const std::shared_ptr<Job>& job);
    void didMove(const std::shared_ptr<Job>& job);
    void keepForWithdrawn(const Job& job);
    void endJob();
    void endCancelledJob();
    void endWithoutData();
    void endWithFile(const QString& path);
    void interrupt(WorkerErrorCode code, const QString& text,
                   const platform::Error* underlying = nullptr);
    /// On the disk that holds `path`; `completion` only if the download still exists then.
    void runOnDisk(const QString& path, std::function<void()> work,
                   void (DownloadFinisher::*completion)(const std::shared_ptr<Job>&));

    DownloadRecord& record_;
    DownloadPaths& paths_;
    Transfer& transfer_;
    FinishingDelegate& delegate_;
    std::shared_ptr<Job> job_;
    bool startsWhenIdle_ = false;
};

}  // namespace engine
