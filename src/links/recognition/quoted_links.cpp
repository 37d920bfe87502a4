#include "links/recognition/quoted_links.h"

#include "platform/text/regular_expression.h"

using namespace Qt::Literals::StringLiterals;

namespace links {

QStringList unearthedURLStrings(const QString& text) {
    if (!text.contains(u'"') && !text.contains(u'\''))
        return {text};
    static const platform::RegularExpression quotedLink(uR"(["'](https?://[^"']+)["'])"_s);
    QStringList found;
    for (const auto& match : platform::RegularExpression(quotedLink).matches(text)) {
        const auto& link = *match.groups[1];
        found.append(text.mid(link.start, link.length));
    }
    return found.isEmpty() ? QStringList(text) : found;
}

}  // namespace links
