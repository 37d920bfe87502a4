#pragma once

#include <QString>
#include <vector>

#include "app/terminal/progress_layout.h"
#include "engine/record/download.h"

namespace app::terminal {

/// How running downloads come along. Main thread.
[[nodiscard]] std::vector<ProgressRow> progressRows(
    const std::vector<engine::DownloadPtr>& downloads);

/// What to say of a finished file behind its name: its size and its folder.
[[nodiscard]] QString completionDetail(engine::DQDownload& download);
/// What a finished download's file is called where it lies, which may be another name than was
/// announced.
[[nodiscard]] QString completionName(engine::DQDownload& download);
/// Why a download failed.
[[nodiscard]] QString failureDetail(engine::DQDownload& download);

}  // namespace app::terminal
