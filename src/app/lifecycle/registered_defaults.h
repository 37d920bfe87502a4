#pragma once

namespace platform {
class UserDefaults;
}

namespace app {

/// Registers what the program's settings are as long as nobody has changed them. Before anything
/// reads a setting.
void registerDefaults(platform::UserDefaults& defaults);

}  // namespace app
