#include "links/user_patterns.h"

namespace links {

std::optional<platform::RegularExpression> compiledUserPattern(const QString& pattern) {
    auto expression = platform::RegularExpression::compile(pattern);
    if (expression)
        expression->setTimeLimit(userPatternTimeLimit);
    return expression;
}

}  // namespace links
