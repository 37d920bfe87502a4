#include "http/shared/bandwidth_account.h"

#include <algorithm>
#include <numeric>

namespace http {

using platform::Seconds;

namespace {

constexpr std::size_t samplesKept = 5;
constexpr Seconds period = 1.0;
/// A read takes no more than this part of what is left, so that many streams share a period.
constexpr std::uint64_t shareOfRemainder = 4;

}  // namespace

void BandwidthAccount::setMaxBandwidthPerSecond(std::uint64_t bytes) {
    const std::scoped_lock guard(bandwidthLock_);
    maxBandwidthPerSecond_ = bytes;
}

std::uint64_t BandwidthAccount::maxBandwidthPerSecond() const {
    const std::scoped_lock guard(bandwidthLock_);
    return maxBandwidthPerSecond_;
}

bool BandwidthAccount::isBandwidthThrottled() const {
    return maxBandwidthPerSecond() > 0;
}

void BandwidthAccount::incrementBandwidthUsedInLastSecond(std::uint64_t bytes) {
    const std::scoped_lock guard(bandwidthLock_);
    bandwidthUsedInLastSecond_ += bytes;
}

std::uint64_t BandwidthAccount::averageBandwidthUsedPerSecond() const {
    const std::scoped_lock guard(bandwidthLock_);
    return averageBandwidthUsedPerSecond_;
}

void BandwidthAccount::recordBandwidthUsage(Seconds now) {
    if (bandwidthUsedInLastSecond_ == 0) {
        bandwidthUsageTracker_.clear();
    } else {
        Seconds interval = bandwidthMeasurementDate_.value_or(now) - now;
        while ((interval < 0 || bandwidthUsageTracker_.size() > samplesKept) &&
               !bandwidthUsageTracker_.empty()) {
            bandwidthUsageTracker_.pop_front();
            interval += period;
        }
    }
    bandwidthUsageTracker_.push_back(bandwidthUsedInLastSecond_);
    bandwidthMeasurementDate_ = now + period;
    bandwidthUsedInLastSecond_ = 0;
    averageBandwidthUsedPerSecond_ =
        std::accumulate(bandwidthUsageTracker_.begin(), bandwidthUsageTracker_.end(),
                        std::uint64_t{0}) /
        bandwidthUsageTracker_.size();
}

void BandwidthAccount::measureBandwidthUsage() {
    const Seconds now = clock_.monotonic();
    const std::scoped_lock guard(bandwidthLock_);
    if (!bandwidthMeasurementDate_ || *bandwidthMeasurementDate_ <= now)
        recordBandwidthUsage(now);
    if (maxBandwidthPerSecond_ == 0 || bandwidthUsedInLastSecond_ <= maxBandwidthPerSecond_)
        return;
    const auto overdraft = static_cast<double>(bandwidthUsedInLastSecond_ - maxBandwidthPerSecond_);
    throttleWakeUpTime_ = *bandwidthMeasurementDate_ +
                          overdraft / static_cast<double>(maxBandwidthPerSecond_) * period;
}

BandwidthAccount::Verdict BandwidthAccount::verdict() const {
    const Seconds now = clock_.monotonic();
    const std::scoped_lock guard(bandwidthLock_);
    if (maxBandwidthPerSecond_ == 0)
        return Verdict::Run;
    if (!throttleWakeUpTime_)
        return Verdict::AsBefore;
    return *throttleWakeUpTime_ > now ? Verdict::Rest : Verdict::Run;
}

std::optional<Seconds> BandwidthAccount::throttleWakeUpTime() const {
    const std::scoped_lock guard(bandwidthLock_);
    return throttleWakeUpTime_;
}

qsizetype BandwidthAccount::readLength(qsizetype wanted) const {
    const std::scoped_lock guard(bandwidthLock_);
    if (maxBandwidthPerSecond_ == 0)
        return wanted;
    if (bandwidthUsedInLastSecond_ > maxBandwidthPerSecond_)
        return 1;
    const std::uint64_t share =
        (maxBandwidthPerSecond_ - bandwidthUsedInLastSecond_) / shareOfRemainder;
    return static_cast<qsizetype>(
        std::clamp<std::uint64_t>(share, 1, static_cast<std::uint64_t>(wanted)));
}

std::uint64_t BandwidthAccount::maxUploadReadLength() {
    const Seconds now = clock_.monotonic();
    const std::scoped_lock guard(bandwidthLock_);
    std::uint64_t length = maxBandwidthPerSecond_ / shareOfRemainder;
    if (bandwidthUsedInLastSecond_ + length > maxBandwidthPerSecond_)
        length =
            maxBandwidthPerSecond_ - std::min(bandwidthUsedInLastSecond_, maxBandwidthPerSecond_);
    if (length == 0 || !bandwidthMeasurementDate_ || *bandwidthMeasurementDate_ <= now)
        throttleWakeUpTime_ = bandwidthMeasurementDate_;
    return length;
}

}  // namespace http
