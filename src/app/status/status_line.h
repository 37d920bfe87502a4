#pragma once

#include <QString>

namespace engine {
class QueueTally;
}

namespace app {

/// What a filter keeps from being seen.
struct HiddenRows {
    qint64 count = 0;
    bool isByState = false;  ///< Not by their text alone: finished ones are hidden as well.
};

/// The line below the list, in the user's language: how many downloads run and are unfinished, and
/// if some are filtered out that too. Empty: there is nothing to say of either.
[[nodiscard]] QString statusLine(const engine::QueueTally& tally, const HiddenRows& hidden);

}  // namespace app
