#pragma once

#include <QtGlobal>
#include <deque>
#include <unordered_map>
#include <vector>

#include "platform/base/clock.h"

namespace engine {
class DQDownload;
}

namespace app {

/// How fast downloads came lately, for this run of the program. All times on the scale that never
/// jumps. Main thread.
class SpeedHistory {
public:
    /// So far back it is known, in seconds.
    static constexpr int reach = 180;

    /// It may have come further.
    void note(const engine::DQDownload& download, platform::Seconds now);
    /// Bytes for each of the last `reach` seconds, the oldest first; 0 where nothing came. Empty:
    /// nothing has come in all that time.
    [[nodiscard]] std::vector<double> rates(const engine::DQDownload& download,
                                            platform::Seconds now) const;
    void forget(const engine::DQDownload& download) { samples_.erase(&download); }

private:
    struct Sample {
        platform::Seconds at = 0;
        qint64 bytes = 0;
        platform::Seconds begun = 0;  ///< When it was first taken.
    };
    std::unordered_map<const engine::DQDownload*, std::deque<Sample>> samples_;
};

}  // namespace app
