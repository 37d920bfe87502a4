#pragma once

#include "engine/workers/download_worker_delegate.h"

namespace engine {

class DQDownload;

/// What the head of an answer means for its download: go on with a part, begin anew, take the
/// file's name, or split the file.
void handleResponse(DQDownload& download, DQDownloadWorkerPrototype& worker,
                    const WorkerResponse& response);

/// The server gives nothing of the part that `worker` asked for now. What is on disk stays, for
/// another address or a later attempt.
void keepPartialData(DQDownload& download, DQDownloadWorkerPrototype& worker,
                     const WorkerResponse& response);

}  // namespace engine
