#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "links/recognition/range_group.h"

namespace links {

/// The addresses that a candidate with range groups stands for, one after the other: `{1-3}`,
/// `{a-c}`, `{01-10}` and `{alpha,beta}`. Several groups multiply out, the leftmost slowest. A
/// group that nothing comes of stays, and with it the rest of the address.
///
/// Memory grows with the length of the candidate and not with the number of addresses; a caller who
/// has had enough stops asking. Any thread, one at a time.
class ExplodedURLs {
public:
    explicit ExplodedURLs(const QString& candidate);

    /// Nothing: that was the last. The first call always gives an address.
    [[nodiscard]] std::optional<QString> next();

private:
    /// A group that is being run through.
    struct Level {
        /// Holds what the views below look at.
        QString text;
        QStringView groupAndSuffix;
        QStringView suffix;
        RangeGroup group;
        /// How much of `prefix_` stands before the group.
        qsizetype prefixLength;
        bool hasYielded = false;
    };

    [[nodiscard]] std::optional<QString> descend(QString text, QStringView rest);
    [[nodiscard]] std::optional<QString> descendBehind(const Level& level);

    std::optional<QString> candidate_;
    /// The address up to the group of the innermost level.
    QString prefix_;
    std::vector<Level> levels_;
    /// Units copied where an alternative held a brace and had to be read again.
    qsizetype copiedUnits_ = 0;
};

/// How many addresses a candidate stands for, without making any; the largest number if there are
/// more. Groups within groups count as if they were words.
[[nodiscard]] quint64 numberOfExplodedURLs(const QString& candidate);

/// All of them at once. A range may stand for more addresses than fit into memory: where text comes
/// from outside, use `ExplodedURLs`.
[[nodiscard]] QStringList explodedURLStrings(const QString& candidate);
/// Those of each candidate, in order.
[[nodiscard]] QStringList explodedURLStrings(const QStringList& candidates);

}  // namespace links
