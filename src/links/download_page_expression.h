#pragma once

#include <QString>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include "platform/text/regular_expression.h"

namespace links {

/// A regular expression that a user wrote into a download page rule. One that takes too long
/// does not match what it has not found by then; the first time, that is logged.
///
/// Any thread.
class DownloadPageExpression {
public:
    enum class Subject {
        Address,  ///< Matched on the main thread. Too slow a few times, it is left out for good.
        Page,     ///< Matched in the background; a dot matches line ends as well.
    };
    static constexpr platform::Seconds addressTimeLimit = 0.2;
    static constexpr platform::Seconds pageTimeLimit = 10;

    /// Nothing: the pattern does not compile.
    [[nodiscard]] static std::optional<DownloadPageExpression> compile(const QString& pattern,
                                                                       Subject subject,
                                                                       platform::Seconds timeLimit);

    [[nodiscard]] const QString& pattern() const { return pattern_; }

    /// Whether the first match has a length.
    [[nodiscard]] bool matchesSomething(const QString& text) const;

    /// Calls `visit` with what each match yields, until it answers false: all groups that took
    /// part, joined, or the whole match if the pattern has no groups. Empty texts are left out.
    void forEachYield(const QString& text, const std::function<bool(const QString&)>& visit) const;

private:
    DownloadPageExpression(QString pattern, platform::RegularExpression expression,
                           Subject subject);
    void complainIfTooSlow(const platform::RegularExpression& used) const;

    QString pattern_;
    platform::RegularExpression expression_;
    Subject subject_;
    /// How often it took too long, in all copies.
    std::shared_ptr<std::atomic<int>> failures_;
};

}  // namespace links
