#pragma once

#include <QString>
#include <vector>

#include "app/rows/status_text.h"
#include "app/terminal/progress_layout.h"
#include "engine/lifecycle/download.h"
#include "engine/queue/queue_admission.h"

namespace app::terminal {

/// How running downloads come along, and for whom those wait whose servers have no place for them.
/// Main thread.
[[nodiscard]] std::vector<ProgressRow> progressRows(const StatusTexts& texts,
                                                    engine::QueueAdmission& admission);

/// What to say of a finished file behind its name: its size and its folder.
[[nodiscard]] QString completionDetail(const engine::DQDownload& download);
/// What a finished download's file is called where it lies, which may be another name than was
/// announced.
[[nodiscard]] QString completionName(const engine::DQDownload& download);
/// Why a download failed.
[[nodiscard]] QString failureDetail(const StatusTexts& texts, engine::DQDownload& download);

}  // namespace app::terminal
