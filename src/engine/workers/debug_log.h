#pragma once

#include <utility>

#include "platform/base/log.h"

namespace engine {

/// A debug line about one download, or about what speaks for it: written if debug logging is on for
/// all, or for this one. `line` is not called otherwise.
template <typename Subject, typename Line>
void debugLog(const Subject& about, Line&& line) {
    if (platform::isDebugLogEnabled() || about.isDebugLogged())
        platform::writeDebugLine(std::forward<Line>(line)());
}

}  // namespace engine
