#include "links/replacement_rule.h"

#include "links/localization.h"
#include "links/user_patterns.h"
#include "platform/base/log.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

/// So many times may a rule fail: a hundred thousand addresses must not each wait for it.
constexpr int mostFailures = 5;

bool isText(const QVariant& value) {
    return value.typeId() == QMetaType::QString;
}

}  // namespace

ReplacementRule::ReplacementRule(Kind kind, QString query, QString replacement, Precheck precheck)
    : kind_(kind),
      query_(std::move(query)),
      replacement_(std::move(replacement)),
      precheck_(precheck) {
    if (kind == Kind::Expression)
        expression_.emplace(query_);
}

ReplacementRule::ReplacementRule(const QVariant& userRule) {
    const QVariantMap keys = userRule.toMap();
    const QVariant query = keys.value(u"Query"_s);
    const QVariant replacement = keys.value(u"Replacement"_s);
    const bool isComplete = isText(query) && isText(replacement);
    query_ = query.toString();
    replacement_ = replacement.toString();
    if (!keys.value(u"Regular Expression"_s).toBool()) {
        kind_ = isComplete && !query_.isEmpty() ? Kind::Literal : Kind::Useless;
        return;
    }
    expression_ = compiledUserPattern(query_);
    if (!isComplete)
        kind_ = Kind::Incomplete;
    else if (expression_)
        kind_ = Kind::Expression;
}

void ReplacementRule::apply(QString& text) const {
    if (precheck_ && !precheck_(text))
        return;
    switch (kind_) {
        case Kind::Literal:
            text.replace(query_, replacement_, Qt::CaseInsensitive);
            break;
        case Kind::Expression:
            applyExpression(text);
            break;
        case Kind::Incomplete:
            platform::log(filledFormat(
                u"ignoring regular expression exception: %@ (reason: %@) <= %@"_s,
                {u"NSInvalidArgumentException"_s, u"\"Query\" or \"Replacement\" is missing"_s,
                 query_.isEmpty() ? replacement_ : query_}));
            break;
        case Kind::Useless:
            break;
    }
}

void ReplacementRule::applyExpression(QString& text) const {
    if (failures_ >= mostFailures)
        return;
    // A copy, since one object serves one thread at a time.
    const platform::RegularExpression expression = *expression_;
    if (auto replaced = expression.replaceAll(text, replacement_))
        text = std::move(*replaced);
    else
        noteFailure();
}

void ReplacementRule::noteFailure() const {
    if (failures_++ == 0)
        platform::log(u"replacement rule cannot be applied or takes too long: "_s + query_,
                      platform::LogLevel::Warning);
}

}  // namespace links
