#include "app/rules/rule_book.h"

#include <algorithm>

#include "app/settings.h"

namespace app {

namespace {

void sortSpecialCases(QVariantList& specialCases) {
    std::stable_sort(specialCases.begin(), specialCases.end(),
                     [](const QVariant& a, const QVariant& b) {
                         return isRuleOrderedBefore(ruleFromDictionary(a.toMap()),
                                                    ruleFromDictionary(b.toMap()));
                     });
}

}  // namespace

RuleBook::RuleBook(platform::UserDefaults& defaults)
    : defaults_(defaults), observation_(defaults.observe([this](const QString& key) {
          if (key == settings::rules.name()) {
              isLoaded_ = false;
          }
      })) {}

const QVariantList& RuleBook::specialCases() const {
    return loaded();
}

QVariantList& RuleBook::loaded() const {
    if (!isLoaded_) {
        isLoaded_ = true;
        specialCases_ = defaults_.arrayForKey(settings::rules.name());
        sortSpecialCases(specialCases_);
    }
    return specialCases_;
}

void RuleBook::addSpecialCase(const Rule& rule) {
    loaded().append(dictionaryFromRule(rule));
    store();
}

void RuleBook::replaceSpecialCase(const QVariantMap& specialCase, const Rule& replacement) {
    loaded().removeOne(specialCase);
    loaded().append(dictionaryFromRule(replacement));
    store();
}

void RuleBook::removeSpecialCase(const QVariantMap& specialCase) {
    loaded().removeOne(specialCase);
    store();
}

void RuleBook::removeAllSpecialCases() {
    isLoaded_ = true;
    specialCases_.clear();
    defaults_.removeObject(settings::rules.name());
}

void RuleBook::store() {
    sortSpecialCases(specialCases_);
    defaults_.setObject(settings::rules.name(), specialCases_);
}

}  // namespace app
