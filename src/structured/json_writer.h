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

/// Whether a value has a JSON form: an object or array as its root, nothing in it but the types of
/// `JsonResult` and other integers, no text with half a surrogate pair, no infinite number, at most
/// `maximumDepth` levels.
[[nodiscard]] bool isValidJSONObject(const QVariant& value);

/// Keys in order; a member reads `"key" : value`, in the compact layout without the blanks. Line
/// separators of Unicode are escaped, so that a text never spans lines. Nothing: no JSON form. Any
/// thread.
[[nodiscard]] std::optional<QString> writeJson(const QVariant& value, JsonStyle style = {});

}  // namespace structured
