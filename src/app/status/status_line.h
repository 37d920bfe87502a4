#pragma once

#include <QString>

namespace app {

class QueueTally;

/// The line below the list, in the user's language: how many downloads run and are unfinished, and
/// if `hidden` are filtered out that too. Empty: nothing is unfinished.
[[nodiscard]] QString statusLine(const QueueTally& tally, qint64 hidden = 0);

}  // namespace app
