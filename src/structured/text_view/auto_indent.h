#pragma once

#include <QString>

namespace structured {

/// The white space with which the last line of a text begins: what a new line behind it begins
/// with as well.
[[nodiscard]] QString indentationOfLastLine(const QString& text);

}  // namespace structured
