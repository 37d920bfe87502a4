#pragma once

#include <QtGlobal>
#include <array>
#include <vector>

#include "engine/record/status.h"

namespace engine {

class DQDownload;

/// How many downloads of a queue stand at each status. Kept along with every change, so that asking
/// costs nothing that grows with the queue. Main thread.
class QueueTally {
public:
    /// With the status given, which is its present one.
    void add(const DQDownload& download, DQDownloadStatus status) { shift(download, status, 1); }
    void remove(const DQDownload& download, DQDownloadStatus status) {
        shift(download, status, -1);
    }

    /// How many match the mask; with mask 0 all.
    [[nodiscard]] qint64 count(StatusMask mask) const;
    /// Of the running ones, how far each has come (0 to 1), in sum.
    [[nodiscard]] double sumOfFractions() const;
    [[nodiscard]] const std::vector<const DQDownload*>& running() const { return running_; }

private:
    void shift(const DQDownload& download, DQDownloadStatus status, int difference);

    std::array<qint64, 5> counts_{};  ///< By the position of the status' bit.
    std::vector<const DQDownload*> running_;
};

}  // namespace engine
