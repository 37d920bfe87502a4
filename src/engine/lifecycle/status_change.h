#pragma once

#include "engine/record/status.h"

namespace engine {

class DQDownload;

/// Why a download stands at another status than before.
enum class StatusCause {
    Added,         ///< It was born with this status.
    Queued,        ///< Somebody queued it.
    Started,       ///< Its turn has come, or somebody started it past the queue.
    Paused,        ///< By the program: the machine sleeps, the schedule says so, it quits.
    PausedByUser,  ///< By its own pause button.
    Interrupted,   ///< By a failure.
    PutOff,        ///< The server has no place for it now; it is queued until there is one.
    StartedOver,   ///< What had come is given up, and it is queued again.
    Finished,
    Failed,   ///< Given up without having been asked to.
    Removed,  ///< By the user; it is about to leave the queue.
};

/// One download's way from one status to another.
struct StatusChange {
    DQDownload& download;
    DQDownloadStatus before;
    DQDownloadStatus after;
    StatusCause cause;
};

}  // namespace engine
