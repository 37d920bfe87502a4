#include "links/download_page_expression.h"

#include "links/user_patterns.h"
#include "platform/base/log.h"

using namespace Qt::Literals::StringLiterals;

namespace links {

namespace {

/// In the background, over pages of many megabytes.
constexpr platform::Seconds pageTimeLimit = 10;

}  // namespace

DownloadPageExpression::DownloadPageExpression(QString pattern,
                                               platform::RegularExpression expression,
                                               Subject subject)
    : pattern_(std::move(pattern)),
      expression_(std::move(expression)),
      subject_(subject),
      isTooSlow_(std::make_shared<std::atomic<bool>>(false)) {}

std::optional<DownloadPageExpression> DownloadPageExpression::compile(const QString& pattern,
                                                                      Subject subject) {
    const bool isForPages = subject == Subject::Page;
    auto expression =
        isForPages ? platform::RegularExpression::compile(
                         pattern,
                         static_cast<unsigned>(platform::RegularExpression::Option::DotMatchesAll))
                   : compiledUserPattern(pattern);
    if (!expression) {
        return std::nullopt;
    }
    if (isForPages) {
        expression->setTimeLimit(pageTimeLimit);
    }
    return DownloadPageExpression(pattern, std::move(*expression), subject);
}

bool DownloadPageExpression::matchesSomething(const QString& text) const {
    if (subject_ == Subject::Address && *isTooSlow_) {
        return false;
    }
    const platform::RegularExpression expression = expression_;
    const auto match = expression.firstMatch(text);
    complainIfTooSlow(expression);
    return match && match->groups[0]->length > 0;
}

void DownloadPageExpression::forEachYield(const QString& text,
                                          const std::function<bool(const QString&)>& visit) const {
    const platform::RegularExpression expression = expression_;
    for (const auto& match : expression.matches(text)) {
        const QString yield = capturedText(match, text);
        if (!yield.isEmpty() && !visit(yield)) {
            break;
        }
    }
    complainIfTooSlow(expression);
}

void DownloadPageExpression::complainIfTooSlow(const platform::RegularExpression& used) const {
    if (used.timedOut() && !isTooSlow_->exchange(true)) {
        platform::log(
            u"download page rule takes too long to match, treating it as not matching: "
            u"<%1>"_s.arg(pattern_),
            platform::LogLevel::Warning);
    }
}

}  // namespace links
