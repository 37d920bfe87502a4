#pragma once

#include "diagnostics/log_arguments.h"

namespace diagnostics {

/// Does what `orlop-log` is for, with the store in `folder`, and writes to the descriptor `output`,
/// with colours if `hasColors`. Answers the exit status: 0, or 1 if the output takes nothing.
/// `stream` ends when nobody reads it any more.
[[nodiscard]] int runLogCommand(const LogRequest& request, const QString& folder, int output,
                                bool hasColors);

}  // namespace diagnostics
