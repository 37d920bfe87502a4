#pragma once

#include <QString>
#include <QVariant>
#include <optional>

namespace structured {

enum class JsonLayout {
    Pretty,     ///< One member or element a line, indented by tabs.
    Unwrapped,  ///< The same; an object without its braces, its members beginning their lines.
    Compact,    ///< All on one line.
};

struct JsonStyle {
    JsonLayout layout = JsonLayout::Pretty;
    bool escapesSlashes = false;
};

/// Keys in order; a member reads `"key" : value`, in the compact layout without the blanks. Line
/// separators of Unicode are escaped, so that a text never spans lines. Any thread.
///
/// Nothing: the value has no JSON form. It has one if its root is an object or array and all in it
/// are the types of `JsonResult` or other integers, with no half a surrogate pair, no infinite
/// number and at most `maximumDepth` levels.
[[nodiscard]] std::optional<QString> writeJson(const QVariant& value, JsonStyle style = {});

}  // namespace structured
