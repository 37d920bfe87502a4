#include "links/user_patterns.h"

namespace links {

std::optional<platform::RegularExpression> compiledUserPattern(const QString& pattern) {
    auto expression = platform::RegularExpression::compile(pattern);
    if (expression)
        expression->setTimeLimit(userPatternTimeLimit);
    return expression;
}

QString capturedText(const platform::RegularExpression::Match& match, const QString& subject) {
    QString text;
    const std::size_t first = match.groups.size() > 1 ? 1 : 0;
    for (std::size_t index = first; index < match.groups.size(); ++index) {
        if (const auto& range = match.groups[index])
            text.append(QStringView(subject).sliced(range->start, range->length));
    }
    return text;
}

}  // namespace links
