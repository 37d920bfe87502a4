#pragma once

#include <QString>

#include "app/terminal/progress_layout.h"
#include "engine/download.h"

namespace app::terminal {

/// The running downloads of a queue, in its order, and how the queue as a whole stands. Main
/// thread.
[[nodiscard]] ProgressSnapshot progressSnapshot(const std::vector<engine::DownloadPtr>& queue);

/// What to say of a finished file behind its name: its size and its folder.
[[nodiscard]] QString completionDetail(engine::DQDownload& download);
/// Why a download failed.
[[nodiscard]] QString failureDetail(engine::DQDownload& download);

}  // namespace app::terminal
