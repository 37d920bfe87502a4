#pragma once

#include <optional>

#include "http/request/challenge_side.h"
#include "platform/net/credential_storage.h"

namespace http {

struct RequestState;

/// Where credentials for a challenge come from, in this order: the address (servers only), the
/// request that is probed for, the request itself, what has been found saved. What was refused
/// already is passed over. Nothing: no user's name or no password anywhere.
///
/// Under the request's lock.
[[nodiscard]] std::optional<platform::HTTPCredentials> findCredentials(const RequestState& state,
                                                                       const ChallengeSide& side);

/// What the persistent store is asked about.
[[nodiscard]] platform::ProtectionSpace protectionSpace(const RequestState& state,
                                                        const ChallengeSide& side);

/// Whether an HTTP proxy is in use, which alone may ask for a proxy's credentials.
[[nodiscard]] bool usesHttpProxy(const RequestState& state);

}  // namespace http
