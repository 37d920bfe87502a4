#pragma once

#include <QString>

namespace engine {
class QueueTally;
}

namespace app {

/// The line below the list, in the user's language: how many downloads run and are unfinished, and
/// if `hidden` are filtered out that too. Empty: nothing is unfinished.
[[nodiscard]] QString statusLine(const engine::QueueTally& tally, qint64 hidden = 0);

}  // namespace app
