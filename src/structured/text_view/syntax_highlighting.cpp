#include "structured/text_view/syntax_highlighting.h"

#include <algorithm>

#include "platform/text/regular_expression.h"
#include "structured/json/special_values.h"
#include "structured/shorthand/lson_serialization.h"

using namespace Qt::Literals::StringLiterals;

namespace structured {

namespace {

/// A search through the whole text for the things of one role.
struct Pass {
    platform::RegularExpression expression;
    SyntaxRole role;
    /// Of a match whose second group is not empty, which makes it a key.
    std::optional<SyntaxRole> keyRole;
    /// Leaves out what begins within a string that was collected before.
    bool excludesCollected = true;
    bool collects = false;
};

/// A quotation mark that no backslash escapes, up to the next such.
const auto quotedString = uR"re((?<!\\)(?:\\\\)*(".*?(?<!\\)(?:\\\\)*"))re"_s;

platform::RegularExpression expression(const QString& pattern) {
    /// Of text with errors, a broken string may be searched again from each of its characters.
    constexpr platform::Seconds longestSearch = 2;
    platform::RegularExpression result(pattern);
    result.setTimeLimit(longestSearch);
    return result;
}

const std::vector<Pass>& xmlPasses() {
    static const std::vector<Pass> passes = {
        {expression(uR"re(<\s*(?:/|!|\?)?\s*(.+?)(?:\s|>|/))re"_s), SyntaxRole::Tag, {}, false},
        {expression(uR"re((?s)<\s*key\s*>(.+?)<\s*/\s*key\s*>)re"_s),
         SyntaxRole::Key,
         {},
         false,
         true},
        {expression(uR"re(>([^<]+)<\s*/)re"_s), SyntaxRole::Value, {}, true, true},
        {expression(quotedString), SyntaxRole::Value, {}, true, true},
        {expression(uR"re(<\s*(true)\s*/\s*>)re"_s), SyntaxRole::TrueBoolean, {}},
        {expression(uR"re(<\s*(false)\s*/\s*>)re"_s), SyntaxRole::FalseBoolean, {}},
    };
    return passes;
}

const std::vector<Pass>& jsonPasses() {
    static const std::vector<Pass> passes = {
        {expression(quotedString + uR"re((\s*:)?)re"_s), SyntaxRole::Value, SyntaxRole::Key, false,
         true},
        {expression(uR"re(\d+(?:\.\d+)?)re"_s), SyntaxRole::Tag, {}},
        {expression(u"true"_s), SyntaxRole::TrueBoolean, {}},
        {expression(u"false"_s), SyntaxRole::FalseBoolean, {}},
    };
    return passes;
}

/// Ranges that may overlap, for the question whether a place lies in one of them.
class RangeSet {
public:
    /// Once.
    void add(const std::vector<DQJSONString>& strings) {
        for (const DQJSONString& string : strings)
            ranges_.push_back(string.range());
        std::sort(ranges_.begin(), ranges_.end(),
                  [](const TextRange& a, const TextRange& b) { return a.location < b.location; });
        qsizetype furthest = 0;
        for (const TextRange& range : ranges_) {
            furthest = std::max(furthest, range.location + range.length);
            furthestEnds_.push_back(furthest);
        }
    }

    [[nodiscard]] bool contains(qsizetype place) const {
        const auto behind = std::upper_bound(
            ranges_.begin(), ranges_.end(), place,
            [](qsizetype wanted, const TextRange& range) { return wanted < range.location; });
        return behind != ranges_.begin() &&
               furthestEnds_[static_cast<std::size_t>(behind - ranges_.begin() - 1)] > place;
    }

private:
    std::vector<TextRange> ranges_;        ///< By location.
    std::vector<qsizetype> furthestEnds_;  ///< Of the ranges up to and with each.
};

class Highlighter {
public:
    explicit Highlighter(const QString& text) : text_(text) {}

    void run(const Pass& pass) {
        RangeSet excluded;
        if (pass.excludesCollected)
            excluded.add(strings_);
        const platform::RegularExpression expression = pass.expression;
        for (const auto& match : expression.matches(text_)) {
            const auto group = match.groups.size() > 1 ? match.groups[1] : match.groups[0];
            if (group && !excluded.contains(group->start))
                take({group->start, group->length}, pass, isKey(match, pass));
        }
    }

    /// Texts that stand for values which JSON lacks.
    void markSpecialValues() {
        for (const DQJSONString& string : strings_) {
            QString value = string.stringValue();
            value = value.mid(1, value.size() - 2).replace("\\/"_L1, "/"_L1);
            if (!string.key() && specialValueFromString(value).isValid())
                spans_.push_back({string.range(), SyntaxRole::Tag});
        }
    }

    [[nodiscard]] std::vector<SyntaxSpan> takeSpans() { return std::move(spans_); }
    [[nodiscard]] std::vector<DQJSONString> takeStrings() { return std::move(strings_); }

private:
    static bool isKey(const platform::RegularExpression::Match& match, const Pass& pass) {
        constexpr std::size_t twoGroups = 3;
        return pass.keyRole && match.groups.size() == twoGroups && match.groups[2] &&
               match.groups[2]->length > 0;
    }

    void take(TextRange range, const Pass& pass, bool isKey) {
        spans_.push_back({range, isKey ? *pass.keyRole : pass.role});
        if (pass.collects)
            strings_.emplace_back(text_, range, isKey);
    }

    const QString& text_;
    std::vector<SyntaxSpan> spans_;
    std::vector<DQJSONString> strings_;
};

}  // namespace

SyntaxHighlighting syntaxHighlighting(const QString& text, DQDetectedFormat format) {
    Highlighter highlighter(text);
    for (const Pass& pass : isXML(format) ? xmlPasses() : jsonPasses())
        highlighter.run(pass);
    SyntaxHighlighting result;
    if (!isXML(format)) {
        if (DQLSONSerialization::convertsSpecialValues())
            highlighter.markSpecialValues();
        result.quotedJSONStrings = highlighter.takeStrings();
    }
    result.spans = highlighter.takeSpans();
    return result;
}

}  // namespace structured
