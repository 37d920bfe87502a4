#include "engine/queue/queue_tally.h"

#include <bit>

#include "engine/lifecycle/download.h"

namespace engine {

qint64 QueueTally::count(StatusMask mask) const {
    qint64 count = 0;
    for (std::size_t bit = 0; bit < counts_.size(); ++bit)
        count += mask == anyStatus || (mask >> bit & 1U) != 0 ? counts_[bit] : 0;
    return count;
}

double QueueTally::sumOfFractions() const {
    double sum = 0;
    for (const DQDownload* download : running_)
        sum += download->downloadCompletionFraction();
    return sum;
}

void QueueTally::shift(const DQDownload& download, DQDownloadStatus status, int difference) {
    counts_[static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(status)))] +=
        difference;
    if (status != DQDownloadStatusDownloading)
        return;
    if (difference > 0)
        running_.push_back(&download);
    else
        std::erase(running_, &download);
}

}  // namespace engine
