#pragma once

#include <QVariantList>
#include <optional>

#include "app/rules/rule.h"
#include "engine/rules.h"
#include "platform/base/user_defaults.h"

namespace app {

/// The user's rules, in the order in which they are tried. Read at the first use and held until the
/// setting is changed elsewhere; every edit is stored at once. Main thread.
class RuleBook final : public engine::Rules {
public:
    explicit RuleBook(platform::UserDefaults& defaults);
    RuleBook(const RuleBook&) = delete;
    RuleBook& operator=(const RuleBook&) = delete;

    /// The dictionaries as stored (see `ruleFromDictionary`), sorted.
    [[nodiscard]] const QVariantList& specialCases() const override;

    void addSpecialCase(const Rule& rule);
    void replaceSpecialCase(const QVariantMap& specialCase, const Rule& replacement);
    void removeSpecialCase(const QVariantMap& specialCase);
    void removeAllSpecialCases();

private:
    [[nodiscard]] QVariantList& loaded() const;
    void store();

    platform::UserDefaults& defaults_;
    mutable bool isLoaded_ = false;
    mutable QVariantList specialCases_;
    platform::Observation observation_;
};

}  // namespace app
