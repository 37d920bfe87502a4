#pragma once

#include <QStringList>

#include "platform/base/user_defaults.h"

/// The settings that only the windows read.
namespace ui::settings {

using platform::Setting;

inline const Setting<QString> logWindowFrame{u"com.tarnworks.Orlop.ILRLogWindow",
                                             {},
                                             false,
                                             "Where the log window stands, in Qt's own form."};
inline const Setting<QString> mainWindowFrame{
    u"NSWindow Frame MainWindow",
    {},
    false,
    "Where the main window stands: left, top, width and height, and \"maximized\" if it is."};
inline const Setting<QStringList> mainToolbar{
    u"Main Toolbar 3003",
    {},
    false,
    "The items of the toolbar while bandwidth cannot be limited; absent: the usual ones."};
inline const Setting<QStringList> mainToolbarWithThrottling{
    u"Main Toolbar 3003 (Throttling Supported)",
    {},
    false,
    "The items of the toolbar otherwise; absent: the usual ones."};
inline const Setting<QStringList> preferencesToolbar{
    u"Preferences Toolbar 3016 (Independent)",
    {},
    false,
    "The sections in the toolbar of the settings; absent: all but \"Experimental\"."};

inline const Setting<bool> detailsPane{u"Details Pane", false, false,
                                       "The window shows the details of the selected download."};
inline const Setting<bool> detailsPaneBeside{
    u"Details Pane: Beside", false, false,
    "The details stand beside the list instead of below it."};
inline const Setting<qint64> detailsPaneHeight{
    u"Details Pane: Height", 220, false, "In pixels, below the list.", {.lowest = 1}};
inline const Setting<qint64> detailsPaneWidth{
    u"Details Pane: Width", 340, false, "In pixels, beside the list.", {.lowest = 1}};

inline const Setting<QString> unfinishedAddresses{
    u"Unfinished Addresses",
    {},
    false,
    "What stands in the panel for addresses and was neither added nor cancelled; the next start "
    "shows "
    "it again."};

inline const Setting<bool> watchClipboard{
    u"Watch Clipboard", false, false,
    "Addresses that are copied in other programs are offered for download in a bar."};

// Toolkit.
inline const Setting<bool> flatUserInterfaceDrawing{
    u"DQFlatUserInterfaceDrawing", true, true,
    "The program's own controls are drawn flat; they have no other look as yet."};
inline const Setting<bool> backgroundImageLoaderUsesDetachedThread{
    u"DQBackgroundImageLoaderUsesDetachedThread", false, false,
    "Images are loaded on a thread of their own; no image takes long enough for one as yet."};
inline const Setting<qint64> visibleFrameExtraDockSpacing{
    u"DQVisibleFrameExtraDockSpacing", 0, false,
    "Pixels of the screen that windows leave free besides the desktop's panels."};

inline const Setting<qint64> pseudoLocale{
    u"Pseudo Locale", 0, false,
    "For testing, on the command line only: 1 shows every text with accents, 2 also from right to "
    "left."};

}  // namespace ui::settings
