#pragma once

#include <QString>

namespace engine {

/// Whether downloads may be written to this folder; may ask the user. Grants that are opened stay
/// open until `endFileAccess`. An empty path is refused. Main thread.
[[nodiscard]] bool confirmDownloadAccess(const QString& folder);

/// Gives up all grants, once no download is queued or downloading.
void endFileAccess();

}  // namespace engine
