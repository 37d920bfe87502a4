#pragma once

#include <QString>

namespace engine {

class DQDownload;

/// What is known of a running download, each in words of its own; empty where there is nothing.
struct ProgressTexts {
    QString bytes;     ///< "1.5 of 3 MB", or how much has come. Empty: it is only connecting.
    QString rate;      ///< For a second.
    QString timeLeft;  ///< At that rate.
};
[[nodiscard]] ProgressTexts progressTexts(const DQDownload& download);
/// Bytes, speed and time left of a running download.
[[nodiscard]] QString progressText(const DQDownload& download);
/// What a row says below the name; `live` for one that is being drawn.
[[nodiscard]] QString statusText(DQDownload& download, bool live);
/// Its place in the queue. Null: it does not wait.
[[nodiscard]] QString queueIndexText(const DQDownload& download);
/// The host, if paused downloads of others are there too. Null otherwise.
[[nodiscard]] QString pausedHostText(const DQDownload& download);

}  // namespace engine
