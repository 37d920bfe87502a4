#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <optional>
#include <vector>

#include "links/text/user_expression.h"
#include "platform/net/url.h"

namespace links {

/// Queries of which each is tried if the one before found nothing (or all, if a rule collects).
using DownloadPageStage = std::vector<UserExpression>;

/// Which pages a rule is for, and how the real links are found on them.
struct DownloadPageRule {
    UserExpression source;
    /// One for each page of the way from the first page to the links.
    std::vector<DownloadPageStage> queryCascade;
    bool collectAllMatches = false;
    /// How the file is named after the page: empty for its whole name. Nothing: it is not.
    std::optional<QString> preservedNamePattern;
};

/// The user's rules, read and compiled. Never changes. Any thread.
class DownloadPageRules {
public:
    /// Reads an array of rules, or a dictionary of rules by source, which is taken in natural
    /// order. A rule whose "Use Source Name" cannot be understood is left out alone. Null: it is
    /// neither, no rule is left, or a rule is otherwise not complete, of wrong types or has an
    /// expression that does not compile.
    [[nodiscard]] static std::shared_ptr<const DownloadPageRules> fromObject(
        const QVariant& object);

    /// In the order of matching.
    [[nodiscard]] const std::vector<DownloadPageRule>& rules() const { return rules_; }
    /// The sources of the rules that were left out.
    [[nodiscard]] const QStringList& sourcesLeftOut() const { return sourcesLeftOut_; }

    /// The first rule whose source matches. Null: none.
    [[nodiscard]] const DownloadPageRule* ruleForURL(const platform::Url& url) const;

private:
    std::vector<DownloadPageRule> rules_;
    QStringList sourcesLeftOut_;
};

/// Whether an address leads to a page that holds the real links. `rules` may be null.
[[nodiscard]] bool isDownloadPageURL(const platform::Url& url, const DownloadPageRules* rules);

/// The matching rule's way of naming the file after the page. Nothing: none. `rules` may be null.
[[nodiscard]] std::optional<QString> preservedNamePattern(const platform::Url& url,
                                                          const DownloadPageRules* rules);

}  // namespace links
