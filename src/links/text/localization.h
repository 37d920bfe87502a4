#pragma once

#include <QString>
#include <initializer_list>

namespace links {

/// The user's wording of an English text, which is the key into the string table and the answer
/// where the table has none.
[[nodiscard]] QString localized(const char* english);

/// Marks an English text that stands in a table and is translated where it is shown.
[[nodiscard]] constexpr const char* translatable(const char* english) {
    return english;
}

/// `format` with each placeholder (%@, %d, %lu, %qu, %C) replaced by the next of `values`; what
/// has no value stays, and a placeholder inside a value is no placeholder.
[[nodiscard]] QString filledFormat(const QString& format, std::initializer_list<QString> values);

}  // namespace links
