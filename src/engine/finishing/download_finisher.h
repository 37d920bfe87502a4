#pragma once

#include <QByteArray>
#include <QString>
#include <atomic>
#include <memory>
#include <optional>
#include <vector>

#include "engine/finishing/file_assembly.h"
#include "engine/finishing/finished_file.h"

namespace engine {

class DQDownload;
class DQDownloadWorkerPrototype;
struct ResumePlan;

/// Takes a download whose workers are done to its end.
///
/// The file is put together and synced beside its workers' files, and only then moved to its final
/// path, so that nothing but the whole file is ever seen there. Both happen in the background, with
/// the download still downloading; all else on the main thread.
class DownloadFinisher {
public:
    explicit DownloadFinisher(DQDownload& download) : download_(download) {}
    ~DownloadFinisher() { cancel(); }

    void workerDidFinish(DQDownloadWorkerPrototype& worker);
    /// Goes on with what was cut short at an earlier end.
    void finishPartialData(const ResumePlan& plan);
    /// The file is at its final path already, all of it.
    void adoptFinishedFile(const QString& path);

    /// Work is going on in the background, even if it has been cancelled.
    [[nodiscard]] bool isBusy() const { return job_ != nullptr; }
    void cancel();
    /// Starts the download once the work that was cancelled has ended.
    void startWhenIdle() { startsWhenIdle_ = job_->isCancelled; }

private:
    struct Job {
        std::vector<FilePiece> pieces;
        QByteArray body;  ///< In place of pieces: the whole file, which lies in no file yet.
        FileOrigin origin;
        bool hasUserChosenPath = false;
        int attempts = 0;
        std::atomic<bool> isCancelled = false;

        // Of the background, until it reports.
        AssemblyResult assembly;
        bool wasMoveTried = false;
        QString target;
        std::optional<platform::Error> moveError;

        void assemble() { assembly = assembleFile(pieces, isCancelled); }
        void moveToTarget();
        void placeBody();
    };

    [[nodiscard]] std::vector<FilePiece> piecesOfWorkers() const;
    [[nodiscard]] bool isWholeFile(const DQDownloadWorkerPrototype& worker) const;
    void conclude(std::vector<FilePiece> pieces);
    [[nodiscard]] bool hasRightLength(const std::vector<FilePiece>& pieces) const;
    void handleWrongLength(const std::vector<FilePiece>& pieces);
    void place(const QByteArray& body);
    void didPlace(const std::shared_ptr<Job>& job);
    void concludeThroughPartialFile(const QByteArray& body);
    void beginJob();
    void assemble(std::vector<FilePiece> pieces);
    void didAssemble(const std::shared_ptr<Job>& job);
    void move(const std::shared_ptr<Job>& job);
    void didMove(const std::shared_ptr<Job>& job);
    void endJob();
    void endCancelledJob();
    void endWithoutData();
    void endWithFile(const QString& path);
    void close();

    DQDownload& download_;
    std::shared_ptr<Job> job_;
    bool startsWhenIdle_ = false;
};

}  // namespace engine
