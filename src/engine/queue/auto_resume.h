#pragma once

#include <optional>

#include "platform/base/clock.h"

namespace platform {
class UserDefaults;
}

namespace engine {

/// When a download that failed is tried again by itself. Of a burst of failures, as when the
/// network goes away, one is; the others wait for the user. Main thread.
class AutoResume {
public:
    explicit AutoResume(const platform::UserDefaults& defaults) : defaults_(defaults) {}

    /// A transfer of any download has failed at `now`, on the scale that never jumps. The delay
    /// after which it is to be tried again. Nothing: it is not.
    [[nodiscard]] std::optional<platform::Seconds> noteFailure(platform::Seconds now);

private:
    const platform::UserDefaults& defaults_;
    std::optional<platform::Seconds> lastFailure_;
};

}  // namespace engine
