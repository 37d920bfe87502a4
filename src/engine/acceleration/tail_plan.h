#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "engine/transfer/running_part.h"
#include "platform/base/clock.h"

namespace engine {

/// What is to be done so that a slow connection does not hold up a split file at its end. Nothing
/// but figures in, and decisions out.

/// From where on a connection that has become free takes over a part.
struct PartSplit {
    std::size_t part = 0;
    qint64 offset = 0;  ///< In the part.
};
/// Of the part that will take longest by what is left of it and its rate: so much that both end
/// together, which is half of it if both are equally fast. (With half of a slow one, again and
/// again, most of the time the slow ones would be left with too much, and the last ones with less
/// than the minimum.) Nothing: it is less than `minimum` bytes, or would not pay any more.
/// `rate`: of the connection that has become free, if it is known.
[[nodiscard]] std::optional<PartSplit> splitSlowestPart(const std::vector<RunningPart>& parts,
                                                        std::optional<double> rate, qint64 minimum);

/// Whether a part comes at less than a quarter of the rate of the others, and will take so many
/// seconds more and longer.
[[nodiscard]] bool crawls(const std::vector<RunningPart>& parts, std::size_t part,
                          platform::Seconds left);

}  // namespace engine
