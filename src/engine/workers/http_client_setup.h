#pragma once

namespace platform {
class UserDefaults;
}

namespace engine {

class Throttle;

/// Hands the engine's settings to the HTTP client. To be called once for each HTTPSession. Main
/// thread.
void configureHTTPClient(const platform::UserDefaults& defaults, const Throttle& throttle);

}  // namespace engine
