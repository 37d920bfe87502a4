#include "app/queue/download_order.h"

#include <algorithm>
#include <cmath>

#include "platform/text/comparison.h"

namespace app {

namespace {

constexpr double equalSeconds = 0.1;
constexpr double equalFraction = 0.00001;

int sign(int value) {
    return (value > 0) - (value < 0);
}

int compareNumbers(double a, double b, double tolerance) {
    return std::abs(a - b) <= tolerance ? 0 : (a < b ? -1 : 1);
}

int compareKeys(const QByteArray& a, const QByteArray& b) {
    return sign(a.compare(b));
}

}  // namespace

void SortKey::Text::update(const QString& newText) {
    if (newText == text && !key.isNull()) {
        return;
    }
    text = newText;
    key = platform::naturalSortKey(newText);
}

void SortKey::update(const engine::DQDownload& download, qint64 criterion) {
    switch (criterion) {
        case criterion::dateAdded:
            number_ = static_cast<double>(download.date().toMSecsSinceEpoch()) / 1000.0;
            break;
        case criterion::progress:
            number_ = download.downloadCompletionFraction();
            isPaused_ = download.status() == engine::DQDownloadStatusPaused;
            break;
        case criterion::host:
            text_.update(download.queueRelevantHost());
            break;
        case criterion::address:
            text_.update(download.originalURLString());
            break;
        default:
            break;
    }
    name_.update(download.sortName());
    address_ = download.originalURLString();
}

int SortKey::compareByCriterion(const SortKey& a, const SortKey& b, qint64 criterion) {
    switch (criterion) {
        case criterion::dateAdded:
            return compareNumbers(a.number_, b.number_, equalSeconds);
        case criterion::progress: {
            const int order = compareNumbers(a.number_, b.number_, equalFraction);
            if (order == 0 && a.number_ < equalFraction && a.isPaused_ != b.isPaused_) {
                return a.isPaused_ ? -1 : 1;
            }
            return order;
        }
        case criterion::host:
        case criterion::address:
            return compareKeys(a.text_.key, b.text_.key);
        default:
            return compareKeys(a.name_.key, b.name_.key);
    }
}

links::NeighbourOrder SortKey::compare(const SortKey& a, const SortKey& b, qint64 criterion) {
    if (const int order = compareByCriterion(a, b, criterion)) {
        return {order, false};
    }
    if (const int order = compareKeys(a.name_.key, b.name_.key)) {
        return {order, true};
    }
    return {sign(platform::compareStringsNaturally(a.address_, b.address_)), true};
}

links::NeighbourOrder compareDownloadsWithCriterion(const engine::DQDownload& a,
                                                    const engine::DQDownload& b, qint64 criterion) {
    SortKey keyA, keyB;
    keyA.update(a, criterion);
    keyB.update(b, criterion);
    return SortKey::compare(keyA, keyB, criterion);
}

namespace {

std::vector<SortKey> sortKeys(const Downloads& downloads, qint64 criterion) {
    std::vector<SortKey> keys(downloads.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        keys[i].update(*downloads[i], criterion);
    }
    return keys;
}

}  // namespace

void sortDownloads(Downloads& downloads, qint64 criterion) {
    const std::vector<SortKey> keys = sortKeys(downloads, criterion);
    std::vector<std::size_t> order(downloads.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = i;
    }
    mergeSort(order, [&](std::size_t a, std::size_t b) {
        return SortKey::compare(keys[a], keys[b], criterion).order < 0;
    });
    Downloads sorted;
    sorted.reserve(downloads.size());
    for (const std::size_t index : order) {
        sorted.push_back(std::move(downloads[index]));
    }
    downloads = std::move(sorted);
}

bool containsDownloadsEffectivelySortedByCriterion(const Downloads& downloads, qint64 criterion,
                                                   bool mustUseCriterion) {
    return criterion >= 0 &&
           links::isEffectivelySorted(sortKeys(downloads, criterion), mustUseCriterion,
                                      [criterion](const SortKey& a, const SortKey& b) {
                                          return SortKey::compare(a, b, criterion);
                                      });
}

}  // namespace app
