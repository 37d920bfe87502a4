#pragma once

#include <optional>

#include "engine/workers/download_worker_delegate.h"
#include "platform/base/clock.h"

class QDateTime;

namespace engine {

/// Whether a status says that the server may serve the same request later (RFC 9110, 15.6.4;
/// RFC 6585, 4).
[[nodiscard]] bool asksToWait(qint64 statusCode);

/// For how many seconds "Retry-After" asks to wait (RFC 9110, 10.2.3): 1 to a day. A date counts
/// from the answer's own date, or from `now` if it has none. Nothing: it says nothing, or nothing
/// that can be understood.
[[nodiscard]] std::optional<platform::Seconds> retryAfter(const WorkerResponse& response,
                                                          const QDateTime& now);

/// How long to wait where the server does not say: longer after each refusal, up to about a minute,
/// and never the same for two who were refused together. `refusals`: how many came before.
[[nodiscard]] platform::Seconds pauseAfterRefusal(int refusals);

}  // namespace engine
