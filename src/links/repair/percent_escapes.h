#pragma once

#include <QString>
#include <optional>

namespace platform {
class UserDefaults;
}

namespace links {

/// Percent escapes decoded as UTF-8, else as ISO Latin 1. A single malformed escape leaves the
/// whole text as it is.
[[nodiscard]] QString stringByReplacingPercentEscapesIfNecessary(const QString& text);

/// The same for text in which a plus sign means a blank; an escaped plus sign stays one. A text of
/// nothing but plus signs and blanks keeps them.
[[nodiscard]] QString stringByReplacingPlusAndPercentEscapesIfNecessary(const QString& text);

/// What plus signs mean in names that addresses and servers give.
enum class PlusSigns { StandForBlanks, Stay };
/// As the setting "Plus Signs In Addresses Stand For Blanks" says.
[[nodiscard]] PlusSigns plusSignsInNames(const platform::UserDefaults& defaults);
/// One of the two above.
[[nodiscard]] QString stringByReplacingEscapesOfName(const QString& text, PlusSigns plusSigns);

/// Escapes in UTF-8 what RFC 3986 has no place for: well-formed escapes, the first "#" and the
/// brackets of an IPv6 host stay. Nothing: the text has half of a surrogate pair.
[[nodiscard]] std::optional<QString> URLEncodedString(const QString& text);

}  // namespace links
