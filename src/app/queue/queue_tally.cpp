#include "app/queue/queue_tally.h"

#include <bit>

#include "engine/record/download.h"

namespace app {

void QueueTally::add(const engine::DQDownload& download) {
    if (statuses_.emplace(&download, download.status()).second) {
        shift(download, download.status(), 1);
    }
}

void QueueTally::remove(const engine::DQDownload& download) {
    if (const auto known = statuses_.extract(&download)) {
        shift(download, known.mapped(), -1);
    }
}

void QueueTally::reflectStatus(const engine::DQDownload& download) {
    const auto known = statuses_.find(&download);
    if (known == statuses_.end() || known->second == download.status()) {
        return;
    }
    shift(download, known->second, -1);
    known->second = download.status();
    shift(download, known->second, 1);
}

qint64 QueueTally::count(engine::StatusMask mask) const {
    if (mask == engine::anyStatus) {
        return static_cast<qint64>(statuses_.size());
    }
    qint64 count = 0;
    for (std::size_t bit = 0; bit < counts_.size(); ++bit) {
        count += (mask >> bit & 1U) != 0 ? counts_[bit] : 0;
    }
    return count;
}

double QueueTally::sumOfFractions() const {
    double sum = 0;
    for (const engine::DQDownload* download : running_) {
        sum += download->downloadCompletionFraction();
    }
    return sum;
}

void QueueTally::shift(const engine::DQDownload& download, engine::DQDownloadStatus status,
                       int difference) {
    counts_[static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(status)))] +=
        difference;
    if (status != engine::DQDownloadStatusDownloading) {
        return;
    }
    if (difference > 0) {
        running_.push_back(&download);
    } else {
        std::erase(running_, &download);
    }
}

}  // namespace app
