#pragma once

#include <functional>
#include <optional>
#include <unordered_map>

#include "engine/transfer/transfer.h"
#include "platform/base/timer.h"

namespace engine {

/// Sees to it that one slow connection does not hold up a file whose parts lie in place: a
/// connection that has become free takes over some of the slowest part, and one that crawls for a
/// while is given up for a new one, once. Main thread.
class TailWatch {
public:
    /// `connections`: how many the download may have at a time. The transfer outlives it.
    TailWatch(Transfer& transfer, std::function<qint64()> connections);

    /// To be called when a worker is done, before anybody draws conclusions from that.
    void workerDidFinish(const Transfer::Worker& worker);

private:
    [[nodiscard]] bool isWanted() const;
    [[nodiscard]] bool isCrawling(std::size_t part, platform::Seconds left) const;
    [[nodiscard]] bool isConnectionFree() const;
    /// A new worker takes over some of it. `rate`: what is expected of that, in bytes a second;
    /// nothing: what the others bring. False: there is nothing worth it.
    [[nodiscard]] bool shareSlowestPart(std::optional<double> rate);
    void watch();
    void replaceCrawlingWorkers();

    Transfer& transfer_;
    const std::function<qint64()> connections_;
    /// Since when each worker crawls.
    std::unordered_map<const Transfer::Worker*, platform::Seconds> crawlingSince_;
    platform::Timer timer_;
};

}  // namespace engine
