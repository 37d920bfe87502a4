#pragma once

#include <QString>
#include <optional>

#include "platform/text/regular_expression.h"

namespace links {

/// How long one operation with an expression that a user wrote may take, in seconds. A match that
/// makes sense takes microseconds; an expression that backtracks without end must not hang us.
inline constexpr platform::Seconds userPatternTimeLimit = 0.2;

/// Case-insensitive, with the time limit. Nothing: it does not compile.
[[nodiscard]] std::optional<platform::RegularExpression> compiledUserPattern(
    const QString& pattern);

/// What a match of a user's expression yields: its groups one after the other, or all of it if the
/// expression has none.
[[nodiscard]] QString capturedText(const platform::RegularExpression::Match& match,
                                   const QString& subject);

}  // namespace links
