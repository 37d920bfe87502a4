#pragma once

#include <QDateTime>

#include "platform/base/run_loop.h"

namespace engine {

/// The main loop's time on the scale that never jumps, in seconds.
[[nodiscard]] inline platform::Seconds monotonicNow() {
    return platform::mainRunLoop().clock().monotonic();
}

/// The date and time, in UTC.
[[nodiscard]] inline QDateTime wallNow() {
    constexpr double millisecondsPerSecond = 1000;
    return QDateTime::fromMSecsSinceEpoch(
        static_cast<qint64>(platform::mainRunLoop().clock().wall() * millisecondsPerSecond),
        Qt::UTC);
}

}  // namespace engine
