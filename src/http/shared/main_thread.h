#pragma once

namespace http {

/// Whether this is the thread on which the process began, which drives `platform::mainRunLoop()`.
[[nodiscard]] bool isMainThread();

}  // namespace http
