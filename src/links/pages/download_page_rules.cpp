#include "links/pages/download_page_rules.h"

#include "links/pages/download_page_rule_reading.h"

namespace links {

std::shared_ptr<const DownloadPageRules> DownloadPageRules::fromObject(const QVariant& object) {
    auto rules = std::make_shared<DownloadPageRules>();
    for (const SourcedRule& sourced : sourcedDownloadPageRules(object)) {
        DownloadPageRuleReading reading = readDownloadPageRule(sourced);
        if (reading.rule)
            rules->rules_.push_back(std::move(*reading.rule));
        else if (reading.lacksOnlyName)
            rules->sourcesLeftOut_.append(sourced.source.toString());
        else
            return nullptr;
    }
    return rules->rules_.empty() ? nullptr : rules;
}

const DownloadPageRule* DownloadPageRules::ruleForURL(const platform::Url& url) const {
    const QString address = url.absoluteString();
    for (const DownloadPageRule& rule : rules_) {
        if (rule.source.matchesSomething(address))
            return &rule;
    }
    return nullptr;
}

bool isDownloadPageURL(const platform::Url& url, const DownloadPageRules* rules) {
    return rules && rules->ruleForURL(url);
}

std::optional<QString> preservedNamePattern(const platform::Url& url,
                                            const DownloadPageRules* rules) {
    const DownloadPageRule* rule = rules ? rules->ruleForURL(url) : nullptr;
    return rule ? rule->preservedNamePattern : std::nullopt;
}

}  // namespace links
