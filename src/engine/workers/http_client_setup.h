#pragma once

namespace engine {

/// Hands the engine's settings to the HTTP client. The first worker does so by itself; whoever
/// makes another HTTPSession after that does it for that one. Main thread.
void configureHTTPClient();

}  // namespace engine
