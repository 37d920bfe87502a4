#pragma once

#include <cstdint>
#include <optional>

#include "platform/base/clock.h"

namespace http {

/// What decides whether a request has been silent for too long.
struct Silence {
    bool isScheduled = false;  ///< There is a stream, and it is allowed to receive.
    std::optional<platform::Seconds> sinceLastActivity;  ///< Nothing: the time-out is off.
    platform::Seconds timeOutSeconds = 0;                ///< 0: never.
    std::uint64_t postLength = 0;
    std::uint64_t uploadBufferSize = 0;
    std::uint64_t totalBytesSent = 0;
};

/// A body whose first part still sits in the transport's buffer cannot be seen moving, and gets
/// half as long again.
[[nodiscard]] bool shouldTimeOut(const Silence& silence);

}  // namespace http
