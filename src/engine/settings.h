#pragma once

#include <QStringList>

#include "platform/base/user_defaults.h"

/// The user defaults that the engine reads. Each is read at the moment of use, so that a change
/// counts from the next reading on.
namespace engine::settings {

using platform::Setting;

// How many at once.
inline const Setting<qint64> numberOfConcurrentDownloads{
    u"Number Of Concurrent Downloads",
    4,
    false,
    "How many downloads run at once; 0 lifts the limit.",
    {.lowest = 1, .below = 0, .highest = 9, .above = 0}};
inline const Setting<qint64> numberOfConcurrentDownloadsPerHost{
    u"Number Of Concurrent Downloads Per Host",
    2,
    false,
    "How many downloads run at once from one host; 0 lifts the limit.",
    {.lowest = 0}};

// Several connections for one file.
inline const Setting<bool> accelerationEnabled{
    u"Acceleration: Enabled", false, false,
    "Large files are fetched over several connections, except from hosts on the blacklist."};
inline const Setting<qint64> accelerationChannels{u"Acceleration: Channels",
                                                  4,
                                                  false,
                                                  "Connections for one file.",
                                                  {.lowest = 2, .below = 4, .highest = 9}};
inline const Setting<qint64> accelerationMinimumFractionSize{
    u"Acceleration: Minimum Fraction Size",
    100000,
    false,
    "No connection is opened for fewer bytes than this.",
    {.lowest = 1, .below = 100000}};
inline const Setting<bool> accelerationSharesSlowParts{
    u"Acceleration: Share Slow Parts", true, false,
    "A connection that has fetched its part goes on with some of the part that would take longest, "
    "and one that crawls is replaced once. Only where parts are written at their places."};
inline const Setting<bool> accelerationPartsInPlace{
    u"Acceleration: Parts In Place", true, false,
    "The parts of a file are written at their places in it where the file system keeps holes; "
    "otherwise, and everywhere else, each goes to a file of its own and they are joined at the "
    "end."};
inline const Setting<QStringList> accelerationHostWhitelist{
    u"Acceleration: Host Whitelist",
    {},
    false,
    "Hosts that are accelerated although acceleration is off."};
inline const Setting<QStringList> accelerationHostBlacklist{
    u"Acceleration: Host Blacklist",
    {},
    false,
    "Hosts that are not accelerated although acceleration is on."};
inline const Setting<bool> displayAccelerationConnections{
    u"Display Acceleration Connections", false, false,
    "The progress text of a download says how many connections it has."};

// Transfers.
inline const Setting<bool> throttleEnabled{u"Throttle: Enabled", false, false,
                                           "The bandwidth of all downloads together is limited."};
inline const Setting<qint64> throttleLimit{u"Throttle: Limit",
                                           100000,
                                           true,
                                           "The bandwidth limit in bytes per second.",
                                           {.lowest = 1, .below = 1000}};
inline const Setting<bool> throttleSupported{
    u"Throttle: Supported", true, true, "Bandwidth can be limited at all; read once in a run."};
inline const Setting<qint64> maximumConcurrentOperations{
    u"Maximum Concurrent Operations",
    64,
    false,
    "Requests that may be open at once, over all downloads.",
    {.lowest = 1, .below = 64}};
inline const Setting<qint64> requestTimeoutInterval{
    u"Request Timeout Interval",
    0,
    false,
    "Seconds without a byte until a transfer fails.",
    {.lowest = 1, .below = 60}};
inline const Setting<QString> customUserAgent{
    u"Custom User Agent",
    {},
    false,
    "Sent to servers in place of the program's own name; \"-\" sends no user agent."};
inline const Setting<qint64> filenameExtensionPolicy{
    u"Filename Extension Policy", 1, true,
    "Whether a name takes its extension from the content type: 1 if it has none, 2 also if it has "
    "one that does not belong to the type, 3 always, any other value never."};
inline const Setting<bool> autoResume{u"Auto-Resume", false, false,
                                      "A download that failed is queued again by itself."};
inline const Setting<qint64> retriesWhenServerIsBusy{
    u"Server Busy: Retries",
    5,
    false,
    "How often a server that has no place for a download is asked again before the download is "
    "given up.",
    {.lowest = 0, .highest = 100}};
inline const Setting<double> autoResumeIntervalThreshold{
    u"Auto-Resume: Interval Threshold", 5.0, false,
    "Seconds that must have passed since the last failure of any download for a new failure to be "
    "resumed."};
inline const Setting<double> autoResumeDelay{
    u"Auto-Resume: Delay", 1.0, false,
    "Seconds from a failure until the download is queued again."};

// Files.
inline const Setting<qint64> intermediatesLocation{
    u"Intermediates Location", 1, true,
    "Above 0, partial data lies in an .orlop folder beside its target, otherwise in the folder of "
    "the program's own data."};
inline const Setting<bool> storeMetadataLocally{
    u"Store Metadata Locally", true, true,
    "An .orlop folder carries all that is needed to go on with its download, even on another "
    "disk."};
inline const Setting<QString> downloadsFolder{
    u"Downloads Folder", {}, false, "The general folder; absent, the user's download folder."};
inline const Setting<QString> subdivisionFormatDefault{
    u"Downloads Folder: Subdivision Format (Default)",
    {},
    false,
    "Date format for a subfolder of the general folder; empty for none."};
inline const Setting<QString> subdivisionFormatRules{
    u"Downloads Folder: Subdivision Format (Rules)",
    {},
    false,
    "Date format for a subfolder of a rule's folder; empty for none."};
inline const Setting<qint64> subdivisionDate{
    u"Downloads Folder: Subdivision Format: Date", 0, false,
    "1 names the subfolder by when the download was added, any other value by today."};
inline const Setting<qint64> lastModifiedHeaderAdoption{
    u"Last-Modified Header Adoption", 0, false,
    "Above 0, a finished file gets the server's date as its date of modification."};

// Rows.
inline const Setting<bool> privateDownloading{
    u"Private Downloading", false, false,
    "Names are hidden wherever they are shown, and nothing enters the history."};
inline const Setting<bool> privateDownloadingPreservesExtensions{
    u"Private Downloading Preserves Extensions", false, false,
    "A hidden name still shows its extension and icon."};
inline const Setting<bool> privateDownloadingAddsGenericPrefix{
    u"Private Downloading Adds Generic Prefix", false, false,
    "A hidden name says that it is the name of a file."};
inline const Setting<bool> displayLocationsAsNames{
    u"Display Locations As Names", false, false,
    "Rows show where a download comes from or lies in place of its name."};
inline const Setting<bool> revealByLaunching{
    u"Reveal By Launching", false, false,
    "The button of a finished row opens the file and does not reveal it."};
inline const Setting<bool> uselessAnimations{u"Useless Animations", true, true,
                                             "Rows that go fade out and collapse."};

}  // namespace engine::settings
