#include "links/text/user_expression.h"

#include "platform/base/log.h"

using namespace Qt::Literals::StringLiterals;

namespace links {

namespace {

// A match that makes sense takes microseconds in an address and milliseconds in a page.
constexpr platform::Seconds addressTimeLimit = 0.2;
constexpr platform::Seconds pageTimeLimit = 5;

/// Once may be the machine's fault.
constexpr int mostFailures = 3;

QString capturedText(const platform::RegularExpression::Match& match, const QString& subject) {
    QString text;
    const std::size_t first = match.groups.size() > 1 ? 1 : 0;
    for (std::size_t index = first; index < match.groups.size(); ++index) {
        if (const auto& range = match.groups[index])
            text.append(QStringView(subject).sliced(range->start, range->length));
    }
    return text;
}

}  // namespace

UserExpression::UserExpression(QString pattern, platform::RegularExpression expression)
    : pattern_(std::move(pattern)),
      expression_(std::move(expression)),
      failures_(std::make_shared<std::atomic<int>>(0)) {}

std::optional<UserExpression> UserExpression::compile(const QString& pattern, Subject subject) {
    return compile(pattern, subject, subject == Subject::Page ? pageTimeLimit : addressTimeLimit);
}

std::optional<UserExpression> UserExpression::compile(const QString& pattern, Subject subject,
                                                      platform::Seconds timeLimit) {
    using Option = platform::RegularExpression::Option;
    const Option option = subject == Subject::Page ? Option::DotMatchesAll : Option::None;
    auto expression = platform::RegularExpression::compile(pattern, static_cast<unsigned>(option));
    if (!expression)
        return std::nullopt;
    expression->setTimeLimit(timeLimit);
    return UserExpression(pattern, std::move(*expression));
}

// Each operation works on a copy, since one object serves one thread at a time.

bool UserExpression::matchesSomething(const QString& text) const {
    if (isGivenUp())
        return false;
    const platform::RegularExpression expression = expression_;
    const auto match = expression.firstMatch(text);
    if (expression.timedOut())
        noteFailure();
    return match && match->groups[0]->length > 0;
}

bool UserExpression::forEachYield(const QString& text,
                                  const std::function<bool(const QString&)>& visit,
                                  const std::stop_token& stop) const {
    if (isGivenUp() || stop.stop_requested())
        return false;
    platform::RegularExpression expression = expression_;
    expression.setStopToken(stop);
    expression.forEachMatch(text, [&](const platform::RegularExpression::Match& match) {
        const QString yield = capturedText(match, text);
        return yield.isEmpty() || visit(yield);
    });
    if (expression.timedOut() && !stop.stop_requested())
        noteFailure();
    return !expression.timedOut();
}

std::optional<QString> UserExpression::replaceAll(const QString& text,
                                                  const QString& replacement) const {
    if (isGivenUp())
        return std::nullopt;
    const platform::RegularExpression expression = expression_;
    auto replaced = expression.replaceAll(text, replacement);
    if (!replaced)
        noteFailure();
    return replaced;
}

bool UserExpression::isGivenUp() const {
    return *failures_ >= mostFailures;
}

void UserExpression::noteFailure() const {
    if ((*failures_)++ == 0) {
        platform::log(
            u"regular expression takes too long or cannot be applied, treating it as not "
            u"matching: <%1>"_s.arg(pattern_),
            platform::LogLevel::Warning);
    }
}

}  // namespace links
