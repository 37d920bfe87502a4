#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "platform/net/http_message.h"

namespace platform {

/// Why nobody can tell where a body with these headers ends, in plain words. Empty: one can.
[[nodiscard]] QString contradictionOfFraming(const HTTPHeaders& response);

/// The length of a body with these headers, which contradict nothing. Nothing: it is not announced,
/// or overruled by a transfer coding (RFC 9112, 6.3).
[[nodiscard]] std::optional<std::uint64_t> announcedBodyLength(const HTTPHeaders& response);

/// Whether nothing but the end of the connection says where such a body ends.
[[nodiscard]] bool endsWithConnection(const HTTPHeaders& response);

}  // namespace platform
