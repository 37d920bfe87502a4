#include "links/repair/replacement_rule.h"

#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/base/values.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

bool isText(const QVariant& value) {
    return value.typeId() == QMetaType::QString;
}

}  // namespace

ReplacementRule::ReplacementRule(Kind kind, QString query, QString replacement, Precheck precheck)
    : kind_(kind),
      query_(std::move(query)),
      replacement_(std::move(replacement)),
      precheck_(precheck) {}

ReplacementRule::ReplacementRule(const QVariant& userRule) {
    const QVariantMap keys = userRule.toMap();
    const QVariant query = keys.value(u"Query"_s);
    const QVariant replacement = keys.value(u"Replacement"_s);
    const bool isComplete = isText(query) && isText(replacement);
    query_ = query.toString();
    replacement_ = replacement.toString();
    if (!platform::boolValue(keys.value(u"Regular Expression"_s))) {
        kind_ = isComplete && !query_.isEmpty() ? Kind::Literal : Kind::Useless;
        return;
    }
    expression_ = UserExpression::compile(query_, UserExpression::Subject::Address);
    if (!isComplete)
        kind_ = Kind::Incomplete;
    else if (expression_)
        kind_ = Kind::Expression;
}

const std::optional<UserExpression>& ReplacementRule::expression() const {
    if (precheck_) {
        std::call_once(compiled_, [this] {
            expression_ = UserExpression::compile(query_, UserExpression::Subject::Address, 0);
        });
    }
    return expression_;
}

void ReplacementRule::apply(QString& text) const {
    if (precheck_ && !precheck_(text))
        return;
    switch (kind_) {
        case Kind::Literal:
            text.replace(query_, replacement_, Qt::CaseInsensitive);
            break;
        case Kind::Expression:
            text = expression()->replaceAll(text, replacement_).value_or(text);
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

}  // namespace links
