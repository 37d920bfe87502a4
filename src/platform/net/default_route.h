#pragma once

namespace platform {

/// Whether an interface that is up leads beyond its own network, as the kernel's tables say
/// (proc(5), net/route; net/ipv6_route). Asks the kernel; any thread.
[[nodiscard]] bool hasDefaultRoute();

}  // namespace platform
