#include "links/pages/download_page_rule_reading.h"

#include <algorithm>

#include "links/text/trimming.h"
#include "platform/text/comparison.h"

using namespace Qt::Literals::StringLiterals;

namespace links {

namespace {

using Subject = UserExpression::Subject;

/// As people write booleans: numbers but 0, and texts that begin with Y, T or a digit but 0. What
/// cannot be read so is nothing.
std::optional<bool> booleanValue(const QVariant& value) {
    switch (value.typeId()) {
        case QMetaType::Bool:
        case QMetaType::Double:
        case QMetaType::LongLong:
            return value.toDouble() != 0;
        case QMetaType::QString: {
            const platform::RegularExpression isTrue(uR"re(^\s*[+-]?0*[YT1-9])re"_s);
            return isTrue.firstMatch(value.toString()).has_value();
        }
        default:
            return std::nullopt;
    }
}

/// Nothing: no text, a blank one, or one that does not compile.
std::optional<UserExpression> readExpression(const QVariant& value, Subject subject) {
    if (value.typeId() != QMetaType::QString || trimmedString(value.toString()).isEmpty())
        return std::nullopt;
    return UserExpression::compile(value.toString(), subject);
}

std::optional<DownloadPageStage> readStage(const QVariant& value) {
    const QVariantList alternatives =
        value.typeId() == QMetaType::QVariantList ? value.toList() : QVariantList{value};
    DownloadPageStage stage;
    for (const QVariant& alternative : alternatives) {
        auto query = readExpression(alternative, Subject::Page);
        if (!query)
            return std::nullopt;
        stage.push_back(std::move(*query));
    }
    return stage;
}

/// Empty: not acceptable.
std::vector<DownloadPageStage> readCascade(const QVariant& value) {
    std::vector<DownloadPageStage> cascade;
    if (value.typeId() != QMetaType::QVariantList)
        return cascade;
    for (const QVariant& written : value.toList()) {
        auto stage = readStage(written);
        if (!stage)
            return {};
        cascade.push_back(std::move(*stage));
    }
    return cascade;
}

struct NamePattern {
    bool isAcceptable = true;
    std::optional<QString> pattern;
};

NamePattern readNamePattern(const QVariant& value) {
    if (!value.isValid())
        return {};
    if (value.typeId() == QMetaType::QString) {
        const auto expression = readExpression(value, Subject::Address);
        return expression ? NamePattern{true, expression->pattern()} : NamePattern{false, {}};
    }
    const auto isWanted = booleanValue(value);
    return {isWanted.has_value(), isWanted.value_or(false) ? std::optional(u""_s) : std::nullopt};
}

}  // namespace

std::vector<SourcedRule> sourcedDownloadPageRules(const QVariant& object) {
    std::vector<SourcedRule> rules;
    if (object.typeId() == QMetaType::QVariantMap) {
        const QVariantMap bySource = object.toMap();
        QStringList sources = bySource.keys();
        std::stable_sort(sources.begin(), sources.end(), [](const QString& a, const QString& b) {
            return platform::compareStringsNaturally(a, b) < 0;
        });
        for (const QString& source : sources)
            rules.push_back({source, bySource[source]});
    } else if (object.typeId() == QMetaType::QVariantList) {
        for (const QVariant& rule : object.toList())
            rules.push_back({rule.toMap().value(u"Source"_s), rule});
    }
    return rules;
}

DownloadPageRuleReading readDownloadPageRule(const SourcedRule& sourced) {
    if (sourced.rule.typeId() != QMetaType::QVariantMap)
        return {};
    const QVariantMap rule = sourced.rule.toMap();
    auto source = readExpression(sourced.source, Subject::Address);
    auto cascade = readCascade(rule.value(u"Query Cascade"_s));
    const NamePattern name = readNamePattern(rule.value(u"Use Source Name"_s));
    if (!source || cascade.empty())
        return {};
    if (!name.isAcceptable)
        return {std::nullopt, true};
    const bool collects = booleanValue(rule.value(u"Collect All Matches"_s)).value_or(false);
    return {DownloadPageRule{std::move(*source), std::move(cascade), collects, name.pattern}};
}

}  // namespace links
