#pragma once

#include <optional>

#include "platform/base/clock.h"
#include "platform/base/error.h"

namespace engine {

class DQDownload;
class DQDownloadWorkerPrototype;

/// One of several workers was refused its part: it waits until another has ended, or if none is
/// left that reads, the download for its server, which may count a connection that has just ended.
/// `told`: when the server wants to be asked again, in seconds. False: the server serves none of
/// them, or has refused too often.
[[nodiscard]] bool letPartWait(DQDownload& download, DQDownloadWorkerPrototype& worker,
                               std::optional<platform::Seconds> told = std::nullopt);

/// A transfer ended in failure: the download is interrupted with what is on disk, unless a resume
/// that got no byte can be asked for where the download began, or the worker can wait.
void handleFailure(DQDownload& download, DQDownloadWorkerPrototype& worker,
                   const platform::Error& error);

}  // namespace engine
