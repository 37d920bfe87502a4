#pragma once

#include <QtGlobal>
#include <algorithm>

namespace app {

/// How far a batch of downloads has come. It remembers how many there were at the most, so that
/// the whole does not jump back when one of them finishes and no longer counts.
class BatchProgress {
public:
    /// More work came: count anew.
    void invalidateLongTermNumberOfQueuedOrDownloadingDownloads() { count_ = 0; }
    /// One of them will never finish, because the user took it out.
    void decrementLongTermNumberOfQueuedOrDownloadingDownloads() { --count_; }

    /// 0 to 1 with so many queued and running downloads, of which the running ones have come so
    /// far in sum. Negative: there are none.
    [[nodiscard]] double fraction(qint64 active, double sumOfFractions) {
        if (active <= 0) {
            count_ = 0;
            return -1.0;
        }
        count_ = std::max(count_, active);
        return (sumOfFractions + static_cast<double>(count_ - active)) /
               static_cast<double>(count_);
    }

private:
    qint64 count_ = 0;
};

}  // namespace app
