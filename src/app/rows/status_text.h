#pragma once

#include <QString>

namespace engine {
class DQDownload;
class DownloadQueue;
struct OverallFigures;
}  // namespace engine
namespace platform {
class UserDefaults;
}

namespace app {

class FilePresence;

/// What rows say below the names of their downloads. Main thread.
class StatusTexts {
public:
    /// Both outlive this.
    StatusTexts(engine::DownloadQueue& queue, FilePresence& presence);

    /// What is known of a running download, each in words of its own; empty where there is nothing.
    struct Progress {
        QString bytes;     ///< "1.5 of 3 MB", or how much has come. Empty: it is only connecting.
        QString rate;      ///< For a second.
        QString timeLeft;  ///< At that rate.
        QString percent;   ///< "34 %", if the length of the file is known.
    };
    [[nodiscard]] Progress progress(const engine::DQDownload& download) const;
    /// Bytes, speed and time left of a running download.
    [[nodiscard]] QString downloadProgressDescription(const engine::DQDownload& download) const;
    [[nodiscard]] QString downloadProgressDescription(const Progress& progress,
                                                      const engine::DQDownload& download) const;
    /// The same for a row that shows all but the bytes in places of their own.
    [[nodiscard]] QString bytesDescription(const Progress& progress,
                                           const engine::DQDownload& download) const;
    /// What a row says; `live` for one that is being drawn.
    [[nodiscard]] QString statusDescriptionWithLiveDetails(engine::DQDownload& download,
                                                           bool live) const;
    /// Its place in the queue. Null: it does not wait.
    [[nodiscard]] QString queueIndexDescription(const engine::DQDownload& download) const;
    /// For whom it waits, and how long, if its server has no place for it now. Null: it has.
    [[nodiscard]] QString hostWaitDescription(const engine::DQDownload& download) const;
    /// The host, if paused downloads of others are there too. Null otherwise.
    [[nodiscard]] QString pausedHostDescription(const engine::DQDownload& download) const;

private:
    [[nodiscard]] QString withAccelerationSuffix(const QString& text,
                                                 const engine::DQDownload& download) const;
    [[nodiscard]] QString abortedText(const engine::DQDownload& download, bool live) const;
    [[nodiscard]] QString doneText(engine::DQDownload& download) const;
    [[nodiscard]] QString waitingText(const engine::DQDownload& download, bool live) const;
    [[nodiscard]] QString stoppedText(const engine::DQDownload& download, bool live) const;
    [[nodiscard]] QString anonymizedHost(const QString& host) const;

    engine::DownloadQueue& queue_;
    FilePresence& presence_;
    const platform::UserDefaults& defaults_;
};

}  // namespace app
