#pragma once

#include "platform/base/user_defaults.h"

/// The settings that only the windows read.
namespace ui::settings {

inline constexpr platform::Setting<qint64> progressBarStyle{
    u"Progress Bar Style", 0, false,
    "0 lively background, 1 subtle background, 2 pill, 3 divider line."};

}  // namespace ui::settings
