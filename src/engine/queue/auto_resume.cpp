#include "engine/queue/auto_resume.h"

#include <utility>

#include "engine/settings.h"
#include "platform/base/user_defaults.h"

namespace engine {

std::optional<platform::Seconds> AutoResume::noteFailure(platform::Seconds now) {
    if (!defaults_.get(settings::autoResume))
        return std::nullopt;
    const auto last = std::exchange(lastFailure_, now);
    const platform::Seconds threshold = defaults_.get(settings::autoResumeIntervalThreshold);
    const bool isAlone = !last || now < *last || now - *last > threshold;
    return isAlone ? std::optional(defaults_.get(settings::autoResumeDelay)) : std::nullopt;
}

}  // namespace engine
