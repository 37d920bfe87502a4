#pragma once

#include <QtGlobal>

namespace platform {
class UserDefaults;
}

namespace engine {

/// The bandwidth limit of all downloads together, as the user set it. Main thread.
class Throttle {
public:
    /// Whether there can be a limit at all is read now and stays so.
    explicit Throttle(platform::UserDefaults& defaults);

    /// Whether the program's own HTTP client is used at all.
    [[nodiscard]] bool isAvailable() const { return isAvailable_; }
    /// Counts from the next start of the program on. False: until then the old value stays in
    /// force.
    bool setAvailable(bool available);

    [[nodiscard]] bool isThrottled() const;
    void setThrottled(bool throttled);
    /// Bytes per second, at least 1.
    [[nodiscard]] qint64 throttleLimit() const;
    void setThrottleLimit(qint64 limit);

    /// Hands what is set to the HTTP client.
    void apply() const;

private:
    platform::UserDefaults& defaults_;
    bool isAvailable_;
};

}  // namespace engine
