#pragma once

#include <QString>
#include <QVariant>
#include <mutex>
#include <optional>

#include "links/text/user_expression.h"

namespace links {

/// One substitution. Any thread, once made.
class ReplacementRule {
public:
    /// Says cheaply whether a text can match at all.
    using Precheck = bool (*)(const QString& text);

    enum class Kind {
        Literal,
        Expression,
        /// An expression that lacks its query or its replacement.
        Incomplete,
        Useless
    };

    /// A rule of our own, a literal or an expression.
    ReplacementRule(Kind kind, QString query, QString replacement, Precheck precheck);
    /// A user's rule; see `ReplacementRules`.
    explicit ReplacementRule(const QVariant& userRule);

    void apply(QString& text) const;

private:
    /// Of our own rules: compiled when a text first passes the precheck, as most runs have none.
    [[nodiscard]] const std::optional<UserExpression>& expression() const;

    Kind kind_ = Kind::Useless;
    QString query_;
    QString replacement_;
    Precheck precheck_ = nullptr;
    mutable std::once_flag compiled_;
    mutable std::optional<UserExpression> expression_;
};

}  // namespace links
