#pragma once

#include "platform/base/user_defaults.h"

namespace diagnostics::settings {

inline const platform::Setting<bool> disableCoalescing{
    u"ILRIntegratedLogReaderDisableCoalescing", false, false,
    "The log viewer shows equal lines in a row one by one."};
inline const platform::Setting<bool> hideSender{
    u"ILRIntegratedLogReaderHideSender", false, false,
    "The log viewer does not say which part of the program wrote a line."};

}  // namespace diagnostics::settings
