#pragma once

#include <QStringList>
#include <QVariantMap>

#include "platform/base/user_defaults.h"

/// The settings that the queue as a whole reads. Their fallbacks are those of the catalogue in
/// docs/settings.md, which is generated from this header and its sisters.
namespace app::settings {

using platform::Setting;

// Queue and list.
inline const Setting<bool> autoStart{u"Auto-Start", true, true,
                                     "New and restored downloads are queued at once."};
inline const Setting<bool> instantDuplicateCheck{
    u"Instant Duplicate Check", true, true,
    "An address that is already in the queue is not taken in again."};
inline const Setting<bool> removeInactiveDuplicatesOnQuit{
    u"Remove Inactive Duplicates On Quit", false, false,
    "Of several inactive downloads of one address only the last is saved at quit."};
inline const Setting<bool> rememberSelection{u"Remember Selection", true, true,
                                             "The selection is restored at launch."};
inline const Setting<QStringList> selectedURLs{
    u"Selected URLs", {}, false, "The addresses of the selected downloads, kept up to date."};
inline const Setting<qint64> sortingCriterion{
    u"Sorting Criterion", 0, false,
    "How the list is sorted: 0 queue order, 1 name, 2 progress, 3 host, 4 address."};
inline const Setting<bool> invertSorting{u"Invert Sorting", false, false,
                                         "The list is shown upside down."};
inline const Setting<QString> toolbarFilterCriterion{
    u"Toolbar Filter Criterion", QStringLiteral("Name"), false,
    "What the filter looks at: \"Name\" or \"URL\"."};
inline const Setting<qint64> progressBarStyle{
    u"Progress Bar Style", 0, false,
    "0 lively background, 1 subtle background, 2 pill, 3 divider line."};
inline const Setting<bool> autoClearSuccesses{
    u"Auto-Clear Successes", false, false,
    "A finished download vanishes from the list after three seconds."};
inline const Setting<bool> autoClearLemons{
    u"Auto-Clear Lemons", false, false,
    "A failed download vanishes from the list after three seconds."};
inline const Setting<double> urlOpeningInterval{
    u"URL Opening Interval",
    0.1,
    false,
    "Seconds between two of several addresses opened in the browser.",
    {.lowest = 0}};

// Application and window.
inline const Setting<qint64> applicationMode{
    u"Application Mode",
    0,
    false,
    "Where the program shows itself: 0 task bar, 1 status item, 2 both. Without a status item on "
    "the desktop, the task bar.",
    {.lowest = 0, .highest = 2}};
inline const Setting<bool> mainWindowVisibleOnLaunch{
    u"Application Mode: Dock: Main Window Visible On Launch", true, true,
    "The window comes up at launch unless the program lives in the status item alone."};
inline const Setting<bool> backgroundLaunch{
    u"Application Mode: Dock: Background Launch", false, false,
    "The window that comes up at launch does not take the focus."};
inline const Setting<qint64> fullScreenModeBehavior{u"Full Screen Mode Behavior", 1, true,
                                                    "1: the window can fill the screen."};
inline const Setting<bool> rubberWindow{u"Rubber Window", false, false,
                                        "The window's height follows the list."};
inline const Setting<bool> preserveTitleBar{u"Preserve Title Bar", false, false,
                                            "The window keeps its title; it always does, since "
                                            "the desktop draws it and its task switchers name "
                                            "windows by it."};
inline const Setting<QString> preferencesSection{
    u"Preferences Section",
    {},
    false,
    "Section of the settings window to open at the next launch; removed when used."};
inline const Setting<qint64> autoRetreat{
    u"Auto-Retreat",
    0,
    false,
    "After an address was handed over: 0 stay, 1 step back behind the other windows, 2 hide.",
    {.lowest = 0, .highest = 2}};
inline const Setting<qint64> largestSeries{
    u"Largest Series",
    10'000,
    false,
    "A series such as {1-20000} that stands for more addresses is asked about before it is taken, "
    "and refused in the terminal.",
    {.lowest = 1}};
inline const Setting<qint64> quitProcedure{u"Quit Procedure",
                                           0,
                                           false,
                                           "1: quitting with active downloads does not ask.",
                                           {.lowest = 0, .highest = 1}};
inline const Setting<bool> quitOnClose{u"Quit On Close", false, false,
                                       "Closing the main window quits."};
inline const Setting<bool> quitOnCloseCleanSlateOnly{
    u"Quit On Close: Clean Slate Only", false, false,
    "Closing the main window quits only while nothing is active."};
inline const Setting<bool> autoQuit{u"Auto-Quit", false, false,
                                    "The program quits when everything is done."};
inline const Setting<qint64> autoResumeAfterSleepDelay{
    u"Auto-Resume After Sleep: Delay",
    3,
    true,
    "Seconds after waking until what sleep had paused is queued again, as soon as there is a "
    "network but a minute later at most; -1: never.",
    {.lowest = -1}};
inline const Setting<bool> useStatusItemMetaSubmenu{
    u"Use Status Item Meta Submenu", false, false,
    "In the status item's menu, everything from About to Quit goes into a submenu."};
inline const Setting<bool> suppressSpeedExplanation{
    u"Speed: Suppress Toolbar Button Explanation", false, false,
    "The toolbar's speed buttons are no longer explained."};
inline const Setting<bool> suppressScheduleExplanation{
    u"Schedule: Suppress Toolbar Button Explanation", false, false,
    "The toolbar's schedule buttons are no longer explained."};

// Schedule.
inline const Setting<bool> scheduleQueue{u"Schedule: Queue", false, false,
                                         "Every day at a set time all downloads are queued."};
inline const Setting<QVariantMap> scheduleQueueTime{
    u"Schedule: Queue: Time",
    {},
    false,
    "That time: \"Hour\", \"Minute\" and \"Second\"; 22:00:00 if there is none."};
inline const Setting<bool> schedulePause{u"Schedule: Pause", false, false,
                                         "Every day at a set time waiting downloads are paused."};
inline const Setting<QVariantMap> schedulePauseTime{
    u"Schedule: Pause: Time",
    {},
    false,
    "That time: \"Hour\", \"Minute\" and \"Second\"; 06:00:00 if there is none."};
inline const Setting<bool> schedulePauseRadical{u"Schedule: Pause: Radical", false, false,
                                                "Running downloads are paused then as well."};

// Feedback.
inline const Setting<bool> swapDockCounters{
    u"Swap Dock Counters", true, true,
    "The icon's upper number counts what waits and the lower one what runs, instead of the other "
    "way round."};
inline const Setting<qint64> successBounceMode{
    u"Success Bounce Mode",
    2,
    true,
    "When the window asks for attention: 0 never, 1 after each download, 2 after the last.",
    {.lowest = 0, .highest = 2}};
inline const Setting<qint64> successHeartbeatMode{
    u"Success Heartbeat Mode",
    1,
    true,
    "When a sound is played: 0 never, 1 after each download, 2 after the last.",
    {.lowest = 0, .highest = 2}};
inline const Setting<bool> coalesceUserNotifications{
    u"Coalesce User Notifications", false, false, "Notifications of one kind are gathered in one."};
inline const Setting<bool> invertUserNotifications{
    u"Invert User Notifications", false, false,
    "In a gathered notification the newest line is on top."};
inline const Setting<bool> privateDownloadingSendsUserNotifications{
    u"Private Downloading Sends User Notifications", false, false,
    "Notifications are sent while downloading in private as well."};

// Passwords.
inline const Setting<bool> storePasswordsInKeychain{
    u"Store Passwords In Keychain", true, true,
    "A password that is typed in is kept in the desktop's secret store."};

// History.
inline const Setting<qint64> numberOfHistoryItems{u"Number Of History Items",
                                                  100,
                                                  true,
                                                  "How many entries the history keeps; -1: all.",
                                                  {.lowest = -1}};
inline const Setting<qint64> numberOfTopLevelHistoryItems{
    u"Number Of Top-Level History Items", 10, true,
    "How many entries stand in the History menu itself rather than below their day."};
inline const Setting<bool> historyOfCompleteDownloads{u"History Of Complete Downloads", true, true,
                                                      "Only finished downloads enter the history."};
inline const Setting<bool> historyByDateCompleted{
    u"History Archives Downloads By Date Completed", false, false,
    "An entry bears the date at which the download finished, not the one at which it was added."};
inline const Setting<bool> clearHistoryOnQuit{u"Clear History On Quit", false, false,
                                              "Quitting empties the history."};
inline const Setting<QString> historySearchCriterion{
    u"History Search Criterion", QStringLiteral("Name"), false,
    "What a search in the history looks at: \"Name\" or \"URL\"."};

// Folders and rules. The folders that a download reads for itself are the engine's.
inline const Setting<QStringList> recentDownloadsFolders{
    u"Recent Downloads Folders",
    {},
    false,
    "The folders offered for choice; the desktop and the downloads folder if there are none."};
inline const Setting<bool> sortDownloadsFoldersByName{
    u"Sort Downloads Folders By Name", false, false,
    "The folders offered are in the order of their names, not of their paths."};
inline const Setting<bool> allowDashesInLocalizedSuggestions{
    u"Downloads Folder: Subdivision Format: Allow Dashes In Localized Suggestions", false, false,
    "Slashes of local date formats make nested folders in the formats suggested."};
inline const Setting<bool> folderPromptAllowsFilenameEditing{
    u"Download Folder Prompt Allows Filename Editing", false, false,
    "Asked for the folder of a single download, the user can choose its name as well."};
inline const Setting<QVariantList> rules{
    u"Rules",
    {},
    false,
    "The rules: dictionaries with \"Hosts\", \"Extensions\", \"Downloads Folder\" and "
    "\"Application\"."};

inline const Setting<bool> targetsOutsideDownloadFolders{
    u"Targets Outside Download Folders", false, false,
    "A request file or a bundle may name a target outside the folders that downloads go to without "
    "a question; hidden folders, and those of programs and of the system, are asked about all the "
    "same, and refused where nobody can be asked."};

// Browser extension. Kept in settings of their own, which the extension reads.
inline const QString sharedDomain = QStringLiteral("QXRV529TZ8.com.tarnworks.Orlop.Shared");
inline const Setting<QString> safariExtensionFilter{
    u"Safari Extension Filter",
    {},
    false,
    "The links that a browser extension hands over, as a regular expression; stored in "
    "QXRV529TZ8.com.tarnworks.Orlop.Shared.plist."};

// Diagnostics.
inline const Setting<bool> debugLog{u"DQDebugLog", false, false,
                                    "Debug lines are written to the log as well."};

// Folders.
inline const Setting<QVariantMap> securityScopedBookmarks{
    u"Security-Scoped Bookmarks",
    {},
    false,
    "The folders that the user unlocked for a program that may reach no others, by path."};

}  // namespace app::settings
