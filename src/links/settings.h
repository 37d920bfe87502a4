#pragma once

#include "platform/base/user_defaults.h"

namespace links::settings {

inline const platform::Setting<bool> skipRedirectingServices{
    u"Skip Redirecting Services", true, true,
    "Addresses that wrap another address are cut down to it; read once in a run."};

inline const platform::Setting<bool> plusSignsStandForBlanks{
    u"Plus Signs In Addresses Stand For Blanks", true, true,
    "A plus sign in an address or in a name that a server gives becomes a blank in the name of the "
    "file."};

inline const platform::Setting<bool> storeSourceURLInSpotlightComment{
    u"Store Source URL In Spotlight Comment", false, false,
    "A finished file's comment names the addresses it came from."};

inline const platform::Setting<bool> storeQueriesOfSourceURLs{
    u"Store Queries Of Source URLs", true, true,
    "What a finished file says of the addresses it came from has their queries, which may hold "
    "keys "
    "and names."};

inline const platform::Setting<bool> numbersDisableGroupingSeparator{
    u"Numbers: Disable Grouping Separator", false, false,
    "Numbers are shown without separators between thousands; read once."};

inline const platform::Setting<bool> numbersLeaveUnlocalized{
    u"Numbers: Leave Unlocalized", false, false,
    "Numbers are shown with a point for the decimals and commas between thousands; read once."};

inline const platform::Setting<qint64> numbersFractionDigits{
    u"Numbers: Fraction Digits",
    -1,
    false,
    "How many decimals a number may have where nothing else decides; -1: by its size.",
    {.lowest = -1}};

/// Falls back to the user's wording of "a an the", so it has no fallback of its own here.
inline const platform::Setting<QString> ignorableSortingPrefixes{
    u"Ignorable Sorting Prefixes",
    {},
    false,
    "Words, separated by blanks, that do not count at the start of a name when sorting."};

/// Its fallback is `defaultDownloadPageRuleText`.
inline const platform::Setting<QString> downloadPageRules{
    u"Download Page Rules",
    {},
    false,
    "How pages that hold the real links are read: rules in XML, JSON or a shorthand of either."};

}  // namespace links::settings
