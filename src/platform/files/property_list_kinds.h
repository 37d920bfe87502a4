#pragma once

#include <QVariant>

namespace platform {

enum class PropertyListKind { None, Dictionary, Array, String, Integer, Real, Boolean, Data, Date };

/// What a value is in a property list. All of Qt's number types count; a date must be valid and of
/// a year with four digits.
[[nodiscard]] PropertyListKind propertyListKind(const QVariant& value);

/// Whether it is an integer that only 64 unsigned bits hold.
[[nodiscard]] bool isLargeInteger(const QVariant& value);

inline constexpr int deepestPropertyList = 512;

/// 2001-01-01 00:00:00 UTC, from which the binary form counts its dates.
inline constexpr qint64 referenceDateMilliseconds = 978'307'200'000;

}  // namespace platform
