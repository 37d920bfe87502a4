#pragma once

#include <QVariantMap>

#include "platform/base/user_defaults.h"

/// The settings of what ties the program to the desktop.
namespace desktop::settings {

using platform::Setting;

// Status item.
inline const Setting<qint64> statusItemWidth{
    u"DQStatusItemWidth", 0, false,
    "Width of the status item, up to 100; less than its image means the image's."};
inline const Setting<double> statusItemDragSpringActionDelay{
    u"DQStatusItemDragSpringActionDelay", 0.5, false,
    "Seconds that a drag rests on the status item until the window comes up; 0 or less: at once."};
inline const Setting<bool> statusItemVisibilityCheckRespondsToAllWindows{
    u"DQStatusItemVisibilityCheckRespondsToAllWindows", false, false,
    "A status item below any window counts as covered and takes no drops."};

// Icon announcements.
inline const Setting<bool> disableAnnouncing{u"com.tarnworks.AIHDisableAnnouncing", false, false,
                                             "Other programs are not told what the icon shows."};
inline const Setting<bool> disableListening{
    u"com.tarnworks.AIHDisableListening", false, false,
    "What other programs announce of their icons is not listened to."};

// Folders.
inline const Setting<QVariantMap> securityScopedBookmarks{
    u"Security-Scoped Bookmarks",
    {},
    false,
    "The folders that the user unlocked for a program that may reach no others, by path."};

// Updates and news.
inline const Setting<bool> suppressNews{u"Automatic News Updates: Suppress", false, false,
                                        "News are not looked for."};
inline const Setting<bool> newsReportVersion{
    u"Automatic News Updates: Report Version", false, false,
    "Looking for news tells the server which version of the program asks."};
inline const Setting<bool> newsPoppedUpOnce{u"Automatic News Updates: Popped Up Once", false, false,
                                            "News have come up by themselves before."};
inline const Setting<QVariant> latestNews{
    u"Automatic News Updates: Latest", {}, false, "When news were last looked for."};
inline const Setting<qint64> newsVersion{u"Automatic News Updates: Version", 0, false,
                                         "The number of the news that were seen last."};
inline const Setting<QVariantMap> updateStatus{
    u"DQSparkleWrapper Status",
    {},
    false,
    "The update that was announced last: \"Current Version\" and \"Update Version\"."};

}  // namespace desktop::settings
