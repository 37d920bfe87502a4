#pragma once

#include <QVariant>
#include <optional>
#include <vector>

#include "links/pages/download_page_rules.h"

namespace links {

/// A rule as it was written, with the pattern of the pages that it is for.
struct SourcedRule {
    QVariant source;
    QVariant rule;
};

/// The rules of an array, or of a dictionary by source, in the order of matching. Empty: it is
/// neither, or there are none.
[[nodiscard]] std::vector<SourcedRule> sourcedDownloadPageRules(const QVariant& object);

struct DownloadPageRuleReading {
    /// Nothing: it is not complete, of wrong types or has an expression that does not compile.
    std::optional<DownloadPageRule> rule;
    /// Nothing is wrong with it but "Use Source Name".
    bool lacksOnlyName = false;
};

[[nodiscard]] DownloadPageRuleReading readDownloadPageRule(const SourcedRule& sourced);

}  // namespace links
