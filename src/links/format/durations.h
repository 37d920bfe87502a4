#pragma once

#include <QString>

namespace links {

/// A span in seconds, its sign and fraction dropped. `fixedForm`, for logs: "HH:MM:SS", the hours
/// as long as they are. Otherwise for people: "M:SS", "H:MM:SS", and from a day on "1.5 days".
/// Main thread.
[[nodiscard]] QString durationDescription(bool fixedForm, double seconds);

}  // namespace links
