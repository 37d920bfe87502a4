#pragma once

#include <QString>
#include <optional>

namespace structured {

// Both of these pass over a line of one single character that directly follows a line end which
// they have changed. Others' texts have been written so; and since both pass over the same lines,
// what one takes away the other puts back.

/// Takes away the commas at line ends behind which another item follows: those that match
/// `([^,:\s\[{]\s*),([\n\r]\s*+[^\]}])`.
[[nodiscard]] QString textWithoutLineEndCommas(const QString& json);

/// Puts commas where an item ends a line and another follows: between the groups of
/// `([^,:\s\[{]\s*)([\n\r]\s*+[^\]}])`.
[[nodiscard]] QString textWithLineEndCommas(const QString& shorthand);

/// The text in braces if it begins with a quotation mark and so is the members of an object.
[[nodiscard]] std::optional<QString> textInBraces(const QString& shorthand);

}  // namespace structured
