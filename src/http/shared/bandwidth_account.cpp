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
    const std::scoped_lock guard(_bandwidthLock);
    _maxBandwidthPerSecond = bytes;
}

std::uint64_t BandwidthAccount::maxBandwidthPerSecond() const {
    const std::scoped_lock guard(_bandwidthLock);
    return _maxBandwidthPerSecond;
}

bool BandwidthAccount::isBandwidthThrottled() const {
    return maxBandwidthPerSecond() > 0;
}

void BandwidthAccount::incrementBandwidthUsedInLastSecond(std::uint64_t bytes) {
    const std::scoped_lock guard(_bandwidthLock);
    _bandwidthUsedInLastSecond += bytes;
}

std::uint64_t BandwidthAccount::averageBandwidthUsedPerSecond() const {
    const std::scoped_lock guard(_bandwidthLock);
    return _averageBandwidthUsedPerSecond;
}

void BandwidthAccount::recordBandwidthUsage(Seconds now) {
    if (_bandwidthUsedInLastSecond == 0) {
        _bandwidthUsageTracker.clear();
    } else {
        Seconds interval = _bandwidthMeasurementDate.value_or(now) - now;
        while ((interval < 0 || _bandwidthUsageTracker.size() > samplesKept) &&
               !_bandwidthUsageTracker.empty()) {
            _bandwidthUsageTracker.pop_front();
            interval += period;
        }
    }
    _bandwidthUsageTracker.push_back(_bandwidthUsedInLastSecond);
    _bandwidthMeasurementDate = now + period;
    _bandwidthUsedInLastSecond = 0;
    _averageBandwidthUsedPerSecond =
        std::accumulate(_bandwidthUsageTracker.begin(), _bandwidthUsageTracker.end(),
                        std::uint64_t{0}) /
        _bandwidthUsageTracker.size();
}

void BandwidthAccount::measureBandwidthUsage() {
    const Seconds now = _clock.monotonic();
    const std::scoped_lock guard(_bandwidthLock);
    if (!_bandwidthMeasurementDate || *_bandwidthMeasurementDate <= now)
        recordBandwidthUsage(now);
    if (_maxBandwidthPerSecond == 0 || _bandwidthUsedInLastSecond <= _maxBandwidthPerSecond)
        return;
    const auto overdraft = static_cast<double>(_bandwidthUsedInLastSecond - _maxBandwidthPerSecond);
    _throttleWakeUpTime = *_bandwidthMeasurementDate +
                          overdraft / static_cast<double>(_maxBandwidthPerSecond) * period;
}

BandwidthAccount::Verdict BandwidthAccount::verdict() const {
    const Seconds now = _clock.monotonic();
    const std::scoped_lock guard(_bandwidthLock);
    if (_maxBandwidthPerSecond == 0)
        return Verdict::Run;
    if (!_throttleWakeUpTime)
        return Verdict::AsBefore;
    return *_throttleWakeUpTime > now ? Verdict::Rest : Verdict::Run;
}

std::optional<Seconds> BandwidthAccount::throttleWakeUpTime() const {
    const std::scoped_lock guard(_bandwidthLock);
    return _throttleWakeUpTime;
}

qsizetype BandwidthAccount::readLength(qsizetype wanted) const {
    const std::scoped_lock guard(_bandwidthLock);
    if (_maxBandwidthPerSecond == 0)
        return wanted;
    if (_bandwidthUsedInLastSecond > _maxBandwidthPerSecond)
        return 1;
    const std::uint64_t share =
        (_maxBandwidthPerSecond - _bandwidthUsedInLastSecond) / shareOfRemainder;
    return static_cast<qsizetype>(
        std::clamp<std::uint64_t>(share, 1, static_cast<std::uint64_t>(wanted)));
}

std::uint64_t BandwidthAccount::maxUploadReadLength() {
    const Seconds now = _clock.monotonic();
    const std::scoped_lock guard(_bandwidthLock);
    std::uint64_t length = _maxBandwidthPerSecond / shareOfRemainder;
    if (_bandwidthUsedInLastSecond + length > _maxBandwidthPerSecond)
        length =
            _maxBandwidthPerSecond - std::min(_bandwidthUsedInLastSecond, _maxBandwidthPerSecond);
    if (length == 0 || !_bandwidthMeasurementDate || *_bandwidthMeasurementDate <= now)
        _throttleWakeUpTime = _bandwidthMeasurementDate;
    return length;
}

}  // namespace http
