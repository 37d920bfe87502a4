#pragma once

#include <cstddef>

namespace proxy_script {

/// Bounds the process for good: memory beyond what it has, processor time, open files, no dump of
/// its memory. False: the system refused.
[[nodiscard]] bool limitResources(std::size_t moreMemoryBytes, unsigned processorSeconds);

/// From here on the process computes, and reads and writes what is already open; it can open
/// nothing, connect to nothing, start nothing and run no code but what is loaded. False: the system
/// cannot do that.
[[nodiscard]] bool enterSandbox();

}  // namespace proxy_script
