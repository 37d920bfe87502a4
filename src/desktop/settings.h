#pragma once

#include <QVariantMap>

#include "platform/base/user_defaults.h"

/// The settings of what ties the program to the desktop.
namespace desktop::settings {

using platform::Setting;

// Status item.
inline const Setting<qint64> dropTarget{
    u"Drop Target",
    0,
    false,
    "The small window that takes drops is shown: 0 with the status item, 1 always, 2 never.",
    {.lowest = 0, .highest = 2}};
inline const Setting<QString> dropTargetPlace{
    u"Drop Target: Place",
    {},
    false,
    "Where the drop target stands: of the free room of its screen the part to the left, as in "
    "0.5, and the part above, and the name of the screen."};
inline const Setting<qint64> statusItemWidth{
    u"DQStatusItemWidth", 0, false,
    "Width of the drop target, up to 100; less than its image means the image's, 48."};
inline const Setting<double> statusItemDragSpringActionDelay{
    u"DQStatusItemDragSpringActionDelay", 0.5, false,
    "Seconds that a drag rests on the drop target until the window comes up; 0 or less: at once."};
inline const Setting<bool> statusItemVisibilityCheckRespondsToAllWindows{
    u"DQStatusItemVisibilityCheckRespondsToAllWindows", false, false,
    "A drop target below any window, not only below one that fills the screen, counts as covered "
    "and takes no drops."};

// Icon announcements.
inline const Setting<bool> disableAnnouncing{u"com.tarnworks.AIHDisableAnnouncing", false, false,
                                             "Other programs are not told what the icon shows."};
inline const Setting<bool> disableListening{
    u"com.tarnworks.AIHDisableListening", false, false,
    "What other programs announce of their icons is not listened to."};

// Updates and news.
inline const Setting<bool> automaticUpdateChecks{
    u"Automatic Update Checks", true, false,
    "New versions are looked for once a day; where a package manager looks after the program only "
    "if this says so."};
inline const Setting<bool> suppressNews{u"Automatic News Updates: Suppress", false, false,
                                        "News are not looked for by themselves."};
inline const Setting<bool> newsReportVersion{
    u"Automatic News Updates: Report Version", false, false,
    "Looking for news tells the server which version of the program asks."};
inline const Setting<bool> newsPoppedUpOnce{u"Automatic News Updates: Popped Up Once", false, false,
                                            "News have come up by themselves before."};
inline const Setting<QVariantMap> latestNews{
    u"Automatic News Updates: Latest",
    {},
    false,
    "News that wait to be read: \"HTML Content\" and \"URL\"."};
inline const Setting<qint64> newsVersion{u"Automatic News Updates: Version", 0, false,
                                         "The number of the news that were seen last."};
inline const Setting<QVariantMap> updateStatus{
    u"DQSparkleWrapper Status",
    {},
    false,
    "What the last look for updates found: \"Current Version\", \"Update Version\" and "
    "\"Check Date\"."};

}  // namespace desktop::settings
