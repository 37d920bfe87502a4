#pragma once

#include <QString>

namespace platform {

/// Natural order by the user's locale: embedded numbers by value, case and accents as a person
/// would file them. An empty string comes after all others. -1, 0 or 1.
[[nodiscard]] int compareStringsNaturally(const QString& a, const QString& b);

/// The key by which `compareStringsNaturally` orders: memcmp of two keys has the sign of the
/// comparison. For sorting long lists.
[[nodiscard]] QByteArray naturalSortKey(const QString& text);

/// The form in which texts are equal that differ in case, diacritics or character width only.
[[nodiscard]] QString folded(const QString& text);
/// Whether `needle` occurs in `text`, regardless of case, diacritics and character width.
[[nodiscard]] bool containsFolded(const QString& text, const QString& needle);

}  // namespace platform
