#include "links/repair/replacement_rules.h"

#include "links/paths/path_components.h"
#include "links/repair/replacement_rule.h"
#include "platform/base/log.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

constexpr qint64 largestFile = 64LL * 1024 * 1024;

// Most texts are healthy addresses, and telling so costs far less than an expression.
bool lacksScheme(const QString& text) {
    return text.startsWith(u"//") || text.startsWith(u"://");
}

bool hasDoubtfulScheme(const QString& text) {
    const bool startsWithH = text.startsWith(u'h') || text.startsWith(u'H');
    return startsWithH && !text.startsWith(u"http://") && !text.startsWith(u"https://");
}

bool holdsBackslash(const QString& text) {
    return text.contains(u'\\');
}

bool holdsSecondAddress(const QString& text) {
    constexpr qsizetype shortestScheme = 7;  // "http://"
    return text.startsWith(u"http", Qt::CaseInsensitive) &&
           text.indexOf(u"://", shortestScheme) >= 0;
}

}  // namespace

ReplacementRules::ReplacementRules(bool skipRedirectingServices, const QVariant& userRules) {
    using enum ReplacementRule::Kind;
    rules_.emplace_back(Expression, u"^:?//"_s, u"http://"_s, lacksScheme);
    rules_.emplace_back(Expression, u"^h[^:/]+(ps?://)"_s, u"htt$1"_s, hasDoubtfulScheme);
    rules_.emplace_back(Literal, u"\\/"_s, u"/"_s, holdsBackslash);
    // Two addresses with a blank between them are two.
    if (skipRedirectingServices)
        rules_.emplace_back(Expression, u"^https?://[^'\"\\s]*(https?://)"_s, u"$1"_s,
                            holdsSecondAddress);
    for (const QVariant& rule : userRules.toList())
        rules_.emplace_back(rule);
}

ReplacementRules::~ReplacementRules() = default;

QString ReplacementRules::applied(const QString& text) const {
    QString current = text;
    for (const ReplacementRule& rule : rules_)
        rule.apply(current);
    return current;
}

const ReplacementRules& ReplacementRules::shared(bool skipRedirectingServices) {
    static const ReplacementRules rules(skipRedirectingServices,
                                        replacementRulesAtPath(stringByAppendingPathComponent(
                                            platform::userDataFolder(), u"Replacements.plist"_s)));
    return rules;
}

QVariant replacementRulesAtPath(const QString& path) {
    const platform::FileContents contents = platform::readFile(path, largestFile);
    return contents.error ? QVariant() : platform::readPropertyList(contents.data).value;
}

}  // namespace links
