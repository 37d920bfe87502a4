#pragma once

#include <QtGlobal>

namespace structured {

/// Bounds of a text that is read; what a person writes stays far below.
inline constexpr qsizetype maximumTextBytes = qsizetype{64} * 1024 * 1024;
/// Of objects and arrays inside each other.
inline constexpr int maximumDepth = 512;

}  // namespace structured
