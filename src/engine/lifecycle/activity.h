#pragma once

#include <memory>

#include "engine/finishing/download_finisher.h"
#include "engine/lifecycle/space_watch.h"
#include "engine/transfer/speed_limit.h"
#include "engine/transfer/transfer.h"
#include "platform/base/timer.h"

namespace engine {

class DQDownload;
class TailWatch;

/// What a download needs from its first start on. The very many that a long list only holds go
/// without it. Main thread.
struct Activity {
    Activity(DQDownload& download, FinishingDelegate& delegate);
    ~Activity();

    Transfer transfer;
    std::unique_ptr<TailWatch> tailWatch;  ///< Null: it has not been split since it was started.
    SpeedLimit speedLimit;
    DownloadFinisher finisher;
    platform::Timer autoResume;  ///< A resumption that is to come by itself.
    SpaceWatch spaceWatch;
};

}  // namespace engine
