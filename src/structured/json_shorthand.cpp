#include "structured/json_shorthand.h"

#include "platform/text/regular_expression.h"

using namespace Qt::Literals::StringLiterals;

namespace structured {

namespace {

/// Long runs of blank lines before a closing bracket take time that grows with their square.
constexpr platform::Seconds longestTransformation = 5;

QString transformed(const QString& text, const QString& pattern, const QString& replacement) {
    platform::RegularExpression expression(pattern);
    expression.setTimeLimit(longestTransformation);
    return expression.replaceAll(text, replacement).value_or(text);
}

}  // namespace

// The blanks that begin the next line are taken whole ("\s*+"): were some of them given back, one
// of them would pass for an item, and a comma would come to stand before an indented bracket.

QString textWithoutLineEndCommas(const QString& json) {
    return transformed(json, uR"re(([^,:\s\[{]\s*),([\n\r]\s*+[^\]}]))re"_s, u"$1$2"_s);
}

QString textWithLineEndCommas(const QString& shorthand) {
    return transformed(shorthand, uR"re(([^,:\s\[{]\s*)([\n\r]\s*+[^\]}]))re"_s, u"$1,$2"_s);
}

std::optional<QString> textInBraces(const QString& shorthand) {
    static const platform::RegularExpression quoteFirst(uR"re(^\s*")re"_s);
    const platform::RegularExpression expression = quoteFirst;
    if (!expression.firstMatch(shorthand))
        return std::nullopt;
    return u"{%1}"_s.arg(shorthand);
}

}  // namespace structured
