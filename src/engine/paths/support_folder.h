#pragma once

#include <QString>

namespace engine {

/// The queue's file in the program's own folder. Empty: there is no such folder.
[[nodiscard]] QString queueArchivePath();
/// Where partial data lies that has no folder of its own beside its target; made if missing. The
/// system's temporary folder if that fails.
[[nodiscard]] QString intermediateDownloadBasePath();
/// Deletes that folder with all it holds, and the queue's file.
void removeIntermediateFiles();

}  // namespace engine
