#include "app/intake/known_addresses.h"

#include <algorithm>

namespace app {

namespace {

constexpr int lookupsWithoutIndex = 4;

}  // namespace

engine::DownloadPtr KnownAddresses::find(const QString& address) {
    if (++lookups_ > lookupsWithoutIndex && !unindexed_.empty()) {
        makeIndex();
    }
    const auto last = std::find_if(unindexed_.rbegin(), unindexed_.rend(),
                                   [&](const engine::DownloadPtr& download) {
                                       return download->comparisonURLString() == address;
                                   });
    return last == unindexed_.rend() ? index_.value(address) : *last;
}

void KnownAddresses::makeIndex() {
    index_.reserve(static_cast<qsizetype>(unindexed_.size()));
    for (const engine::DownloadPtr& download : unindexed_) {
        index_.insert(download->comparisonURLString(), download);
    }
    unindexed_ = {};
}

}  // namespace app
