#pragma once

#include <QString>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include "platform/text/regular_expression.h"

namespace links {

/// A regular expression that a user wrote, regardless of case. One that takes too long does not
/// match what it has not found by then; the first time, that is logged, and after a few times it
/// is left out for good, so that a hundred thousand addresses do not each wait for it.
///
/// Any thread.
class UserExpression {
public:
    enum class Subject {
        Address,  ///< Or a name: a short text, matched while somebody waits.
        Page,     ///< Matched in the background; a dot matches line ends as well.
    };

    /// Nothing: the pattern does not compile. A time limit of 0 is none.
    [[nodiscard]] static std::optional<UserExpression> compile(const QString& pattern,
                                                               Subject subject);
    [[nodiscard]] static std::optional<UserExpression> compile(const QString& pattern,
                                                               Subject subject,
                                                               platform::Seconds timeLimit);

    [[nodiscard]] const QString& pattern() const { return pattern_; }

    /// Whether the first match has a length.
    [[nodiscard]] bool matchesSomething(const QString& text) const;

    /// Calls `visit` with what each match yields, until it answers false: all groups that took
    /// part, joined, or the whole match if the pattern has no groups. Empty texts are left out.
    /// False: the time was up before all were found, or it was stopped.
    bool forEachYield(const QString& text, const std::function<bool(const QString&)>& visit,
                      const std::stop_token& stop = {}) const;

    /// All matches replaced by the template, in which `$1` is a group. Nothing: that failed.
    [[nodiscard]] std::optional<QString> replaceAll(const QString& text,
                                                    const QString& replacement) const;

private:
    UserExpression(QString pattern, platform::RegularExpression expression);
    [[nodiscard]] bool isGivenUp() const;
    void noteFailure() const;

    QString pattern_;
    platform::RegularExpression expression_;
    /// How often it failed, in all copies.
    std::shared_ptr<std::atomic<int>> failures_;
};

}  // namespace links
