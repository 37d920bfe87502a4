#include "app/intake/known_addresses.h"

namespace app {

namespace {

constexpr int lookupsWithoutIndex = 4;

}  // namespace

bool KnownAddresses::contains(const QString& address) {
    if (++lookups_ > lookupsWithoutIndex && !unindexed_.empty()) {
        makeIndex();
    }
    return index_.contains(address) ||
           std::any_of(unindexed_.begin(), unindexed_.end(),
                       [&](const engine::DownloadPtr& download) {
                           return download->comparisonURLString() == address;
                       });
}

void KnownAddresses::makeIndex() {
    index_.reserve(static_cast<qsizetype>(unindexed_.size()));
    for (const engine::DownloadPtr& download : unindexed_) {
        index_.insert(download->comparisonURLString());
    }
    unindexed_ = {};
}

}  // namespace app
