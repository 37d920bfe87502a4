#pragma once

#include <cstddef>

/// How the program talks to the process that runs an automatic configuration script.
///
/// The process reads one file from its descriptor 0: the address, a zero byte, the host, a zero
/// byte, then the script up to the end. It writes lines to descriptor 1, each a letter and a text
/// in UTF-8, and ends after a result or an error.
namespace platform::script_protocol {

inline constexpr char alertLine = 'A';   ///< What the script said, for the log.
inline constexpr char resultLine = 'R';  ///< What FindProxyForURL answered.
inline constexpr char errorLine = 'E';   ///< Why there is no result.

/// A larger script is not run.
inline constexpr std::size_t maximumScriptBytes = 1 << 20;
/// Of all lines together; a process that writes more is ended.
inline constexpr std::size_t maximumAnswerBytes = 64UL * 1024;

/// Seconds of CPU for one script, and bytes of memory beyond what the engine begins with.
inline constexpr unsigned processorSeconds = 2;
inline constexpr std::size_t memoryBytes = 256 << 20;

}  // namespace platform::script_protocol
