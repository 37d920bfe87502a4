#pragma once

#include <QtGlobal>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>

#include "platform/base/clock.h"

namespace http {

/// The bytes that all requests together have moved in the current second, and what follows from
/// that under a limit: how much a read may take, and until when streams must rest. Bytes are
/// counted after the fact, so a period can be overdrawn; the overdraft is paid for with sleep.
///
/// Any thread.
class BandwidthAccount {
public:
    explicit BandwidthAccount(platform::Clock& clock) : clock_(clock) {}

    /// Bytes per second; 0: no limit.
    void setMaxBandwidthPerSecond(std::uint64_t bytes);
    [[nodiscard]] std::uint64_t maxBandwidthPerSecond() const;
    [[nodiscard]] bool isBandwidthThrottled() const;

    void incrementBandwidthUsedInLastSecond(std::uint64_t bytes);
    [[nodiscard]] std::uint64_t averageBandwidthUsedPerSecond() const;

    /// Ends the period if its second is over, and puts off the wake-up if it is overdrawn.
    void measureBandwidthUsage();

    enum class Verdict { Run, Rest, AsBefore };
    /// What a stream is to do now. Rest: until `throttleWakeUpTime`.
    [[nodiscard]] Verdict verdict() const;
    /// On the clock's monotonic scale. Nothing: nobody has ever had to rest.
    [[nodiscard]] std::optional<platform::Seconds> throttleWakeUpTime() const;

    /// How much of `wanted` a read may take; at least 1.
    [[nodiscard]] qsizetype readLength(qsizetype wanted) const;
    /// How much an upload may take from its source now; 0 also with no limit at all. A 0, or a
    /// period that is over, makes uploads rest until the period's end.
    [[nodiscard]] std::uint64_t maxUploadReadLength();

private:
    void recordBandwidthUsage(platform::Seconds now);

    platform::Clock& clock_;
    mutable std::mutex bandwidthLock_;  ///< Guards all that follows.
    std::uint64_t maxBandwidthPerSecond_ = 0;
    std::uint64_t bandwidthUsedInLastSecond_ = 0;
    std::optional<platform::Seconds> bandwidthMeasurementDate_;  ///< When the period ends.
    std::deque<std::uint64_t> bandwidthUsageTracker_;            ///< Oldest first.
    std::uint64_t averageBandwidthUsedPerSecond_ = 0;
    std::optional<platform::Seconds> throttleWakeUpTime_;
};

}  // namespace http
