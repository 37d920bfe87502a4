#pragma once

#include <QDateTime>

#include "platform/base/clock.h"

namespace platform {
class Disks;
class RunLoop;
class UserDefaults;
}  // namespace platform

namespace engine {

class FileAccess;
class Rules;
class Throttle;
struct Environment;

/// All that the engine needs of what surrounds it, handed to whoever needs some of it; the engine
/// knows no installed object. Everything outlives the downloads. Main thread.
struct Context {
    platform::UserDefaults& defaults;
    /// Of the main thread; it has the clock.
    platform::RunLoop& loop;
    platform::Disks& disks;
    const Environment& environment;
    const Rules& rules;
    FileAccess& fileAccess;
    Throttle& throttle;

    /// On the scale that never jumps, in seconds.
    [[nodiscard]] platform::Seconds monotonicNow() const;
    /// The date and time, in UTC.
    [[nodiscard]] QDateTime wallNow() const;
};

}  // namespace engine
