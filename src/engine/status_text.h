#pragma once

#include <QString>

namespace engine {

class DQDownload;

/// Bytes, speed and time left of a running download.
[[nodiscard]] QString progressText(const DQDownload& download);
/// What a row says below the name; `live` for one that is being drawn.
[[nodiscard]] QString statusText(DQDownload& download, bool live);
/// Its place in the queue. Null: it does not wait.
[[nodiscard]] QString queueIndexText(const DQDownload& download);
/// The host, if paused downloads of others are there too. Null otherwise.
[[nodiscard]] QString pausedHostText(const DQDownload& download);

}  // namespace engine
