#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "structured/json/json_string.h"
#include "structured/text_view/detected_format.h"

namespace structured {

/// What a piece of text is, and so how it is coloured.
enum class SyntaxRole {
    OtherCode,
    InvalidCode,
    Tag,  ///< Also numbers.
    Key,
    Value,
    TrueBoolean,
    FalseBoolean,
    Disabled,  ///< Syntax within a value.
};

struct SyntaxSpan {
    TextRange range;
    SyntaxRole role = SyntaxRole::OtherCode;

    friend bool operator==(const SyntaxSpan&, const SyntaxSpan&) = default;
};

struct SyntaxHighlighting {
    /// Of whatever lies in no span.
    SyntaxRole background = SyntaxRole::OtherCode;
    /// A later one lies over an earlier one.
    std::vector<SyntaxSpan> spans;
    /// In the order of the text. Nothing: not looked for, since the text is no JSON.
    std::optional<std::vector<DQJSONString>> quotedJSONStrings;
};

/// Finds the parts of a text in a spelling; the text may have errors. Any thread.
[[nodiscard]] SyntaxHighlighting syntaxHighlighting(const QString& text, DQDetectedFormat format);

struct SyntaxColor {
    double red, green, blue, alpha;

    friend bool operator==(const SyntaxColor&, const SyntaxColor&) = default;
};

/// Nothing: as the desktop colours the text of its controls (for Disabled, of disabled ones).
[[nodiscard]] std::optional<SyntaxColor> syntaxColor(SyntaxRole role, bool inDarkMode);

}  // namespace structured
