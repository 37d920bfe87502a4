#pragma once

#include "platform/base/error.h"

namespace engine {

class DQDownload;
class DQDownloadWorkerPrototype;

/// A transfer ended in failure: the download is interrupted, or if it was a resume that got no byte
/// from the server, begins anew. One of several that has not begun yet is tried again later.
void handleFailure(DQDownload& download, DQDownloadWorkerPrototype& worker,
                   const platform::Error& error);

}  // namespace engine
