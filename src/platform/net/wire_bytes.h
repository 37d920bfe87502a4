#pragma once

#include <cstdint>
#include <optional>

namespace platform {

/// How many bytes have come over a TCP socket since it was connected and have been read. Nothing:
/// the system does not count them.
[[nodiscard]] std::optional<std::uint64_t> bytesReceivedOnWire(int socket);
/// 0: none.
[[nodiscard]] int localPortOf(int socket);

}  // namespace platform
