#pragma once

#include <QtGlobal>
#include <limits>

namespace engine {

/// Where a download stands. Each value is one bit, so that a mask can name a set of them.
enum DQDownloadStatus : unsigned {
    DQDownloadStatusPaused = 1,       ///< Stopped: not yet queued, paused, or interrupted.
    DQDownloadStatusQueued = 2,       ///< Waits for a slot.
    DQDownloadStatusDownloading = 4,  ///< Workers run, or a download page is being read.
    DQDownloadStatusDone = 8,         ///< The file is complete.
    DQDownloadStatusAborted = 16      ///< Given up, or removed before it was done.
};

/// Statuses ORed together. 0 stands for every download, whatever its status.
using StatusMask = unsigned;
inline constexpr StatusMask anyStatus = 0;
inline constexpr StatusMask activeStatuses = DQDownloadStatusQueued | DQDownloadStatusDownloading;
inline constexpr StatusMask unfinishedStatuses = activeStatuses | DQDownloadStatusPaused;
inline constexpr StatusMask finishedStatuses = DQDownloadStatusDone | DQDownloadStatusAborted;

[[nodiscard]] constexpr bool matchesStatusMask(DQDownloadStatus status, StatusMask mask) {
    return mask == anyStatus || (status & mask) != 0;
}

/// The two buttons of a row.
enum DQDownloadAction : unsigned { DQDownloadActionPrimary = 1, DQDownloadActionRemove = 2 };

/// Answered by operations that look for an index and find none.
inline constexpr qint64 notFound = std::numeric_limits<qint64>::max();

}  // namespace engine
