#pragma once

#include <optional>

#include "engine/lifecycle/download.h"

namespace app {

class DQMainController;

/// Whether its file can be compared with a checksum, now or when it is whole.
[[nodiscard]] bool canExpectChecksum(const engine::DQDownload& download);

/// The user knows what the file is to add up to; nothing: he takes it as it is, and of a finished
/// one he only wants to see it. A finished file is read at once; what failed for its checksum goes
/// on with what is there if that is the file, and is fetched anew if not. Main thread.
void expectChecksum(DQMainController& controller, const engine::DownloadPtr& download,
                    const std::optional<engine::Checksum>& checksum);

}  // namespace app
