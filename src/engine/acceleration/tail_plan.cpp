#include "engine/acceleration/tail_plan.h"

#include <algorithm>
#include <limits>

namespace engine {
namespace {

/// What is over sooner is not worth a request.
constexpr platform::Seconds leastTimeLeft = 0.5;
/// Even of one that has stopped a little stays, for its rate may have been measured in a pause.
constexpr double mostTaken = 127.0 / 128;

/// Of those that have a rate, without one of them.
std::optional<double> meanRate(const std::vector<RunningPart>& parts,
                               std::optional<std::size_t> except) {
    double sum = 0;
    int count = 0;
    for (std::size_t index = 0; index < parts.size(); ++index) {
        if (index != except && parts[index].rate) {
            sum += *parts[index].rate;
            ++count;
        }
    }
    return count > 0 ? std::optional(sum / count) : std::nullopt;
}

/// Seconds. One of unknown rate counts as one of those that are known.
double timeLeft(const RunningPart& part, double typicalRate) {
    const double rate = part.rate.value_or(typicalRate);
    return rate > 0 ? static_cast<double>(part.left()) / rate
                    : std::numeric_limits<double>::infinity();
}

}  // namespace

std::optional<PartSplit> splitSlowestPart(const std::vector<RunningPart>& parts,
                                          std::optional<double> rate, qint64 minimum) {
    const std::optional<double> mean = meanRate(parts, std::nullopt);
    // Without any rate, what is left decides.
    const double typicalRate = mean.value_or(1);
    std::optional<std::size_t> slowest;
    for (std::size_t index = 0; index < parts.size(); ++index) {
        const RunningPart& part = parts[index];
        if (part.state == RunningPart::State::Served && part.left() > 0 &&
            (!slowest || timeLeft(part, typicalRate) > timeLeft(parts[*slowest], typicalRate)))
            slowest = index;
    }
    if (!slowest || (mean && timeLeft(parts[*slowest], typicalRate) < leastTimeLeft))
        return std::nullopt;
    const RunningPart& part = parts[*slowest];
    const double own = part.rate.value_or(typicalRate), other = rate.value_or(typicalRate);
    const double share = own + other > 0 ? std::min(other / (own + other), mostTaken) : 0.5;
    const auto taken = static_cast<qint64>(static_cast<double>(part.left()) * share);
    if (taken < minimum)
        return std::nullopt;
    return PartSplit{*slowest, part.length - taken};
}

bool crawls(const std::vector<RunningPart>& parts, std::size_t part, platform::Seconds left) {
    const RunningPart& slow = parts[part];
    const bool isRunning =
        slow.state == RunningPart::State::Running || slow.state == RunningPart::State::Served;
    const std::optional<double> others = meanRate(parts, part);
    return isRunning && slow.rate && others && *slow.rate < *others / 4 &&
           timeLeft(slow, 0) >= left;
}

}  // namespace engine
