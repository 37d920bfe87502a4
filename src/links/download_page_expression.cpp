#include "links/download_page_expression.h"

#include "links/user_patterns.h"
#include "platform/base/log.h"

using namespace Qt::Literals::StringLiterals;

namespace links {

namespace {

/// Once may be the machine's fault.
constexpr int mostFailures = 3;

}  // namespace

DownloadPageExpression::DownloadPageExpression(QString pattern,
                                               platform::RegularExpression expression,
                                               Subject subject)
    : pattern_(std::move(pattern)),
      expression_(std::move(expression)),
      subject_(subject),
      failures_(std::make_shared<std::atomic<int>>(0)) {}

std::optional<DownloadPageExpression> DownloadPageExpression::compile(const QString& pattern,
                                                                      Subject subject,
                                                                      platform::Seconds timeLimit) {
    using Option = platform::RegularExpression::Option;
    const Option option = subject == Subject::Page ? Option::DotMatchesAll : Option::None;
    auto expression = platform::RegularExpression::compile(pattern, static_cast<unsigned>(option));
    if (!expression)
        return std::nullopt;
    expression->setTimeLimit(timeLimit);
    return DownloadPageExpression(pattern, std::move(*expression), subject);
}

bool DownloadPageExpression::matchesSomething(const QString& text) const {
    if (subject_ == Subject::Address && *failures_ >= mostFailures)
        return false;
    const platform::RegularExpression expression = expression_;
    const auto match = expression.firstMatch(text);
    complainIfTooSlow(expression);
    return match && match->groups[0]->length > 0;
}

void DownloadPageExpression::forEachYield(const QString& text,
                                          const std::function<bool(const QString&)>& visit) const {
    const platform::RegularExpression expression = expression_;
    expression.forEachMatch(text, [&](const platform::RegularExpression::Match& match) {
        const QString yield = capturedText(match, text);
        return yield.isEmpty() || visit(yield);
    });
    complainIfTooSlow(expression);
}

void DownloadPageExpression::complainIfTooSlow(const platform::RegularExpression& used) const {
    if (used.timedOut() && (*failures_)++ == 0) {
        platform::log(
            u"download page rule takes too long to match, treating it as not matching: "
            u"<%1>"_s.arg(pattern_),
            platform::LogLevel::Warning);
    }
}

}  // namespace links
