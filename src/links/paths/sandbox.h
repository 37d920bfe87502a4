#pragma once

namespace links {

/// Whether this process may only reach folders that the user unlocked; worked out once from the
/// environment. Any thread.
[[nodiscard]] bool isSandboxed();

}  // namespace links
