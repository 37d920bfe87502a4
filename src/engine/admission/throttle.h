#pragma once

#include <QtGlobal>

namespace engine {

/// The bandwidth limit of all downloads together, as the user set it. Main thread.
class Throttle {
public:
    /// Whether the program's own HTTP client is used at all. Read at the first call and kept for
    /// the life of the process.
    [[nodiscard]] static bool isAvailable();
    /// Counts from the next start of the program on. False: until then the old value stays in
    /// force.
    static bool setAvailable(bool available);

    [[nodiscard]] static bool isThrottled();
    static void setThrottled(bool throttled);
    /// Bytes per second, at least 1.
    [[nodiscard]] static qint64 throttleLimit();
    static void setThrottleLimit(qint64 limit);

    /// Hands what is set to the HTTP client.
    static void apply();
};

}  // namespace engine
