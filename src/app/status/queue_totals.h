#pragma once

#include <QString>

#include "platform/base/clock.h"

namespace engine {
class QueueTally;
}

namespace app {

/// All running downloads together. Main thread.
struct QueueTotals {
    double bytesPerSecond = 0;
    /// Of those whose length is known, at their own rate; 0: nobody knows.
    platform::Seconds timeLeft = 0;
    /// How far each of them has come (0 to 1), in sum.
    double sumOfFractions = 0;
};

/// `now` on the scale that never jumps.
[[nodiscard]] QueueTotals queueTotals(const engine::QueueTally& tally, platform::Seconds now);

/// As in "1.4 MB/s - 3 minutes remaining". Empty: nothing comes.
[[nodiscard]] QString totalsText(const QueueTotals& totals);
/// As in "34 % · 1.4 MB/s". `fraction`: how far all that is active has come; negative: nothing is.
/// Empty: nothing to say.
[[nodiscard]] QString shortTotalsText(const QueueTotals& totals, double fraction);

}  // namespace app
