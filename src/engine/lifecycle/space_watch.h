#pragma once

#include <QString>

#include "platform/base/error.h"
#include "platform/base/timer.h"

namespace engine {

class DQDownload;

/// If a download was stopped because the disk was full, or the user's share of it, looks from time
/// to time whether there is room again and then queues it. Main thread.
class SpaceWatch {
public:
    explicit SpaceWatch(DQDownload& download);

    /// After an interruption. Errors that are no lack of space: nothing happens.
    void resumeWhenThereIsSpace(const platform::Error& error);
    void cancel() { timer_.cancel(); }
    [[nodiscard]] bool isWatching() const { return timer_.isActive(); }

private:
    void watch();
    void look();
    [[nodiscard]] bool isSpaceBack() const;

    DQDownload& download_;
    platform::Timer timer_;
};

/// Where the room is missing: beside what has come, or where the file is to go once it is whole.
[[nodiscard]] QString folderShortOfSpace(DQDownload& download);

}  // namespace engine
