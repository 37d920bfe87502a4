#pragma once

#include <utility>

#include "engine/workers/download_worker_delegate.h"
#include "platform/base/log.h"

namespace engine {

/// A debug line about one download (null: about none): written if debug logging is on for all, or
/// for this one. `line` is not called otherwise.
template <typename Line>
void debugLog(const DQDownloadWorkerDelegate* download, Line&& line) {
    if (platform::isDebugLogEnabled() || (download && download->isDebugLogged()))
        platform::writeDebugLine(std::forward<Line>(line)());
}

}  // namespace engine
