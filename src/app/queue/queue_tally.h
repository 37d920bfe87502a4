#pragma once

#include <array>
#include <unordered_map>
#include <vector>

#include "engine/record/status.h"

namespace engine {
class DQDownload;
}

namespace app {

/// How many downloads of a queue stand at each status. Kept along with every change, so that asking
/// costs nothing that grows with the queue. Main thread.
class QueueTally {
public:
    void add(const engine::DQDownload& download);
    void remove(const engine::DQDownload& download);
    /// Its status may be another one now. Nothing happens if it is not counted.
    void reflectStatus(const engine::DQDownload& download);

    /// How many match the mask; with mask 0 all.
    [[nodiscard]] qint64 count(engine::StatusMask mask) const;
    /// Of the running ones, how far each has come (0 to 1), in sum.
    [[nodiscard]] double sumOfFractions() const;

private:
    void shift(const engine::DQDownload& download, engine::DQDownloadStatus status, int difference);

    std::unordered_map<const engine::DQDownload*, engine::DQDownloadStatus> statuses_;
    std::array<qint64, 5> counts_{};  ///< By the position of the status' bit.
    std::vector<const engine::DQDownload*> running_;
};

}  // namespace app
