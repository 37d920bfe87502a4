#include "structured/json_shorthand.h"

#include "platform/text/regular_expression.h"

using namespace Qt::Literals::StringLiterals;

namespace structured {

namespace {

QString transformed(const QString& text, const QString& pattern, const QString& replacement) {
    return platform::RegularExpression(pattern).replaceAll(text, replacement).value_or(text);
}

}  // namespace

// The blanks before the next item are taken whole ("\s*+"): were some of them given back, one of
// them would pass for an item, and a comma would come to stand before an indented bracket. Looking
// ahead to that item first keeps the time for many blank lines from growing with their square.

QString textWithoutLineEndCommas(const QString& json) {
    return transformed(json, uR"re(([^,:\s\[{]\s*),([\n\r]\s*+[^\]}]))re"_s, u"$1$2"_s);
}

QString textWithLineEndCommas(const QString& shorthand) {
    return transformed(
        shorthand, uR"re(([^,:\s\[{](?=\s*+[^\]}])\s*)([\n\r][^\S\n\r]*+[^\]}]))re"_s, u"$1,$2"_s);
}

std::optional<QString> textInBraces(const QString& shorthand) {
    const platform::RegularExpression quoteFirst(uR"re(^\s*")re"_s);
    if (!quoteFirst.firstMatch(shorthand))
        return std::nullopt;
    return QString(u'{' + shorthand + u'}');
}

}  // namespace structured
