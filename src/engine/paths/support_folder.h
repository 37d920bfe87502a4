#pragma once

#include <QString>
#include <optional>

#include "platform/base/error.h"

namespace engine {

struct Environment;

/// The queue's file in the program's own folder. Empty: there is no such folder.
[[nodiscard]] QString queueArchivePath(const Environment& environment);
/// Where partial data lies that has no folder of its own beside its target; made if missing. The
/// system's temporary folder if that fails.
[[nodiscard]] QString intermediateDownloadBasePath(const Environment& environment);
/// Deletes that folder with all it holds, and the queue's file. Nothing: that is gone.
std::optional<platform::Error> removeIntermediateFiles(const Environment& environment);

}  // namespace engine
