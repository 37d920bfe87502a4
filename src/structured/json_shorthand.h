#pragma once

#include <QString>
#include <optional>

namespace structured {

/// Takes away the commas at line ends behind which another item follows.
[[nodiscard]] QString textWithoutLineEndCommas(const QString& json);

/// Puts them back. Both skip a line of one single character that directly follows a line end they
/// have changed; that they skip the same ones is what makes the round trip exact.
[[nodiscard]] QString textWithLineEndCommas(const QString& shorthand);

/// The text in braces if it begins with a quotation mark and so is the members of an object.
[[nodiscard]] std::optional<QString> textInBraces(const QString& shorthand);

}  // namespace structured
