#pragma once

#include "platform/base/error.h"

namespace engine {

class DQDownload;

/// If the disk was full, or the user's share of it, looks from time to time whether there is room
/// again and then queues the download, unless the user has done something with it by then. Other
/// errors: nothing happens.
void resumeWhenThereIsSpace(DQDownload& download, const platform::Error& error);
void cancelSpaceWatch(const DQDownload& download);

}  // namespace engine
