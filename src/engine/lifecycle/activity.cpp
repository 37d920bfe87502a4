#include "engine/lifecycle/activity.h"

#include "engine/acceleration/tail_watch.h"
#include "engine/context.h"
#include "engine/lifecycle/download.h"

namespace engine {

Activity::Activity(DQDownload& download, FinishingDelegate& delegate)
    : transfer(download, download.paths(),
               [&download] { download.host().downloadDidChange(download); }),
      speedLimit(transfer),
      finisher(transfer, delegate),
      autoResume(download.context().loop),
      spaceWatch(download) {}

Activity::~Activity() = default;

}  // namespace engine
