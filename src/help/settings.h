#pragma once

#include "platform/base/user_defaults.h"

namespace help::settings {

inline const platform::Setting<bool> centerQuickAccess{
    u"DQHelpManager: Center Quick Access", false, false,
    "The help window's quick access stands in its middle."};
inline const platform::Setting<bool> listAnchorsInSubmenus{
    u"DQHelpManager: List Anchors In Submenus", false, false,
    "The help window's contents list the sections of a page in a submenu of their own."};
inline const platform::Setting<QString> openRelativePath{
    u"DQHelpManager: Open Relative Path",
    {},
    false,
    "Help page to open at the next launch, relative to the help folder; removed when used."};

}  // namespace help::settings
