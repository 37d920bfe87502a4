#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

#include "platform/base/clock.h"

namespace platform {

/// A regular expression of ICU. Positions count UTF-16 units.
///
/// An object may be used by one thread at a time; copies share the compiled pattern and are cheap.
class RegularExpression {
public:
    struct Range {
        qsizetype start;
        qsizetype length;
    };
    struct Match {
        /// Index 0 is the whole match. Nothing: the group took no part.
        std::vector<std::optional<Range>> groups;
    };

    enum class Option : unsigned { None = 0, CaseSensitive = 1, DotMatchesAll = 2, Multiline = 4 };

    /// Nothing if the pattern does not compile. Case-insensitive unless said otherwise.
    [[nodiscard]] static std::optional<RegularExpression> compile(const QString& pattern,
                                                                  unsigned options = 0);
    /// For a constant pattern, which must compile.
    explicit RegularExpression(const QString& pattern, unsigned options = 0);

    /// How long one operation may take before it counts as not matching; for patterns that users
    /// write. 0: no limit.
    void setTimeLimit(Seconds limit);
    /// Ends an operation as if its time were up, from any thread. Heeded only with a time limit.
    void setStopToken(std::stop_token stop);
    /// Whether the last operation ran into the limit or was stopped.
    [[nodiscard]] bool timedOut() const;

    [[nodiscard]] std::optional<Match> firstMatch(const QString& subject, qsizetype from = 0) const;
    [[nodiscard]] std::vector<Match> matches(const QString& subject) const;
    /// Calls `visit` with each match until it answers false. For subjects with so many matches that
    /// they should not all be kept; what was visited before the time limit counts.
    void forEachMatch(const QString& subject, const std::function<bool(const Match&)>& visit) const;
    /// The text of a group of the first match. Nothing: no match, or the group took no part.
    [[nodiscard]] std::optional<QString> firstCapture(const QString& subject, int group) const;
    /// All matches replaced by the template, in which `$1` is a group and a backslash escapes.
    /// Nothing: the template is malformed, or the time limit was reached.
    [[nodiscard]] std::optional<QString> replaceAll(const QString& subject,
                                                    const QString& replacement) const;
    [[nodiscard]] int groupCount() const;

private:
    struct Compiled;
    explicit RegularExpression(std::shared_ptr<const Compiled> compiled);

    std::shared_ptr<const Compiled> compiled_;
    Seconds timeLimit_ = 0;
    std::stop_token stop_;
    mutable bool timedOut_ = false;
};

}  // namespace platform
