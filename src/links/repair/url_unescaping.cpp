#include "links/repair/url_unescaping.h"

#include "links/repair/percent_escapes.h"
#include "links/repair/replacement_rules.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

bool isEscapedAsAWhole(const QString& text) {
    return text.startsWith(u"http%3a"_s, Qt::CaseInsensitive) ||
           text.startsWith(u"https%3a"_s, Qt::CaseInsensitive) ||
           text.startsWith(u"%2f"_s, Qt::CaseInsensitive);
}

bool carriesEscapedAddress(const QString& text) {
    return text.contains(u"=http%3a"_s, Qt::CaseInsensitive) ||
           text.contains(u"=https%3a"_s, Qt::CaseInsensitive);
}

}  // namespace

QString unescapedURLString(const QString& text, bool skipRedirectingServices) {
    QString current = text;
    const bool mayBeEscaped = text.contains(u'%');
    if (mayBeEscaped &&
        (isEscapedAsAWhole(text) || (skipRedirectingServices && carriesEscapedAddress(text))))
        current = stringByReplacingPercentEscapesIfNecessary(text);
    // Most addresses have none, and looking for one unit is far cheaper than for five.
    return current.contains(u'&') ? current.replace(u"&amp;"_s, u"&"_s) : current;
}

QString unescacpedURLStringWithReplacementsApplied(const QString& text,
                                                   bool skipRedirectingServices) {
    return ReplacementRules::shared(skipRedirectingServices)
        .applied(unescapedURLString(text, skipRedirectingServices));
}

}  // namespace links
