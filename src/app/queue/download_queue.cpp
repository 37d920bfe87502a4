#include "app/queue/download_queue.h"

#include <algorithm>

namespace app {

bool anyDownloadFromCollectionMatchesStatusMask(const Downloads& collection,
                                                engine::StatusMask mask) {
    return std::any_of(collection.begin(), collection.end(), [mask](const auto& download) {
        return engine::matchesStatusMask(download->status(), mask);
    });
}

Downloads downloadsFromCollectionMatchingStatusMask(const Downloads& collection,
                                                    engine::StatusMask mask) {
    Downloads matches;
    std::copy_if(collection.begin(), collection.end(), std::back_inserter(matches),
                 [mask](const auto& download) {
                     return engine::matchesStatusMask(download->status(), mask);
                 });
    return matches;
}

DownloadQueue::DownloadQueue(std::function<void()> changed) : changed_(std::move(changed)) {}

std::optional<std::size_t> DownloadQueue::indexOf(const engine::DQDownload& download) const {
    const auto found =
        std::find_if(_downloads.begin(), _downloads.end(),
                     [&](const auto& candidate) { return candidate.get() == &download; });
    if (found == _downloads.end()) {
        return {};
    }
    return static_cast<std::size_t>(found - _downloads.begin());
}

void DownloadQueue::append(engine::DownloadPtr download) {
    tally_.add(*download);
    _downloads.push_back(std::move(download));
    changed_();
}

bool DownloadQueue::remove(const engine::DQDownload& download) {
    const std::optional<std::size_t> index = indexOf(download);
    if (!index) {
        return false;
    }
    tally_.remove(download);
    _downloads.erase(_downloads.begin() + static_cast<std::ptrdiff_t>(*index));
    changed_();
    return true;
}

std::size_t DownloadQueue::removeIf(const std::function<bool(engine::DQDownload&)>& matches) {
    const std::size_t count = std::erase_if(_downloads, [&](const auto& download) {
        const bool goes = matches(*download);
        if (goes) {
            tally_.remove(*download);
        }
        return goes;
    });
    if (count > 0) {
        changed_();
    }
    return count;
}

bool DownloadQueue::replace(const engine::DQDownload& download, engine::DownloadPtr replacement) {
    const std::optional<std::size_t> index = indexOf(download);
    if (!index) {
        return false;
    }
    tally_.remove(download);
    tally_.add(*replacement);
    _downloads[*index] = std::move(replacement);
    changed_();
    return true;
}

void DownloadQueue::reverse() {
    std::reverse(_downloads.begin(), _downloads.end());
    changed_();
}

void DownloadQueue::shuffle(QRandomGenerator& random) {
    for (std::size_t remaining = _downloads.size(); remaining > 1; --remaining) {
        const auto drawn =
            static_cast<std::size_t>(random.bounded(static_cast<quint64>(remaining)));
        std::swap(_downloads[drawn], _downloads[remaining - 1]);
    }
    changed_();
}

void DownloadQueue::sortByCriterion(qint64 criterion) {
    sortDownloads(_downloads, criterion);
    changed_();
}

bool DownloadQueue::move(const Downloads& dragged, qsizetype row, bool inverted) {
    const auto count = static_cast<qsizetype>(_downloads.size());
    qsizetype target = inverted ? count - row : row;
    Downloads moved;
    for (const engine::DownloadPtr& download : dragged) {
        const std::optional<std::size_t> index = indexOf(*download);
        if (!index) {
            continue;
        }
        moved.push_back(download);
        _downloads.erase(_downloads.begin() + static_cast<std::ptrdiff_t>(*index));
        if (static_cast<qsizetype>(*index) < target) {
            --target;
        }
    }
    if (moved.empty()) {
        return false;
    }
    if (inverted) {
        std::reverse(moved.begin(), moved.end());
    }
    target = std::clamp<qsizetype>(target, 0, static_cast<qsizetype>(_downloads.size()));
    _downloads.insert(_downloads.begin() + target, moved.begin(), moved.end());
    changed_();
    return true;
}

}  // namespace app
