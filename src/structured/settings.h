#pragma once

#include "platform/base/user_defaults.h"

namespace structured::settings {

inline const platform::Setting<bool> prefersShorthand{
    u"DQJSONTextViewPrefersShorthand", false, false,
    "Values put into the structured text editor are written in a shorthand."};
inline const platform::Setting<bool> prefersJSON{
    u"DQJSONTextViewPrefersJSON", false, false,
    "Values put into the structured text editor are written as JSON where they can be."};
inline const platform::Setting<bool> escapesJSONSlashes{
    u"DQJSONTextViewEscapesJSONSlashes", false, false,
    "The structured text editor writes slashes in JSON with a backslash."};
inline const platform::Setting<double> fontSize{
    u"DQJSONTextViewFontSize", 0, false,
    "Font size of the structured text editor in points, from 8 to 50; 0 stands for 12."};
inline const platform::Setting<bool> tightLayout{
    u"DQJSONTextViewTightLayout", false, false,
    "No extra space between the lines of the structured text editor."};
inline const platform::Setting<bool> highlightsDespiteError{
    u"DQJSONTextViewAppliesSyntaxHighlightingDespiteError", false, false,
    "The structured text editor also colours text that it cannot read."};

}  // namespace structured::settings
