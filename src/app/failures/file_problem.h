#pragma once

#include <QString>

#include "platform/base/error.h"

namespace app {

/// Why a file that is no download could not be read, in a short plain sentence in the user's
/// language: the text of the error itself is the log's.
[[nodiscard]] QString readingProblem(const platform::Error& error);
/// Why a file could not be written, or not be deleted.
[[nodiscard]] QString writingProblem(const platform::Error& error);

}  // namespace app
