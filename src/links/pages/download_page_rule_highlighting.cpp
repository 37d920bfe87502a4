#include "links/pages/download_page_rule_highlighting.h"

#include "platform/text/regular_expression.h"
#include "structured/text_view/syntax_highlighting.h"

using namespace Qt::Literals::StringLiterals;

namespace links {

namespace {

using structured::SyntaxRole;

void markInXml(const QString& text, structured::SyntaxHighlighting& highlighting) {
    const platform::RegularExpression prefix(
        uR"re(<\s*key\s*>Use Source Name<\s*/\s*key\s*>\s*<\s*string\s*>\s*(title\s*:))re"_s);
    for (const auto& match : prefix.matches(text)) {
        const auto& range = *match.groups[1];
        highlighting.spans.push_back({{range.start, range.length}, SyntaxRole::Disabled});
    }
}

void markInJson(structured::SyntaxHighlighting& highlighting) {
    const platform::RegularExpression prefix(uR"re(^"\s*(title\s*:)\s*(?=\S))re"_s);
    const auto& strings = *highlighting.quotedJSONStrings;
    for (std::size_t i = 1; i < strings.size(); ++i) {
        const auto& key = strings[i - 1];
        if (!key.key() || key.stringValue() != "\"Use Source Name\""_L1)
            continue;
        if (const auto match = prefix.firstMatch(strings[i].stringValue())) {
            const auto& range = *match->groups[1];
            highlighting.spans.push_back(
                {{strings[i].range().location + range.start, range.length}, SyntaxRole::Disabled});
        }
    }
}

}  // namespace

void markTitlePrefixes(const QString& text, structured::SyntaxHighlighting& highlighting) {
    if (highlighting.quotedJSONStrings) {
        markInJson(highlighting);
    } else {
        markInXml(text, highlighting);
    }
}

}  // namespace links
