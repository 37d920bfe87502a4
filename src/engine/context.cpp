#include "engine/context.h"

#include "platform/base/run_loop.h"
#include "platform/base/utc.h"

namespace engine {

platform::Seconds Context::monotonicNow() const {
    return loop.clock().monotonic();
}

QDateTime Context::wallNow() const {
    constexpr double millisecondsPerSecond = 1000;
    return QDateTime::fromMSecsSinceEpoch(
        static_cast<qint64>(loop.clock().wall() * millisecondsPerSecond), platform::utc);
}

}  // namespace engine
