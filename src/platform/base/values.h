#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

namespace platform {

/// Readings of a property-list value as some type. One of another type is converted where that
/// makes sense and else reads as false, 0 or empty.

/// True: a number other than 0, "YES", "Y", "true", "T" in any case, or a text that is such a
/// number.
[[nodiscard]] bool boolValue(const QVariant& value);
/// Fractions are cut off; what is out of range becomes the nearest there is.
[[nodiscard]] qint64 integerValue(const QVariant& value);
[[nodiscard]] double doubleValue(const QVariant& value);
/// A number as text, true as "1" and false as "0". Null if it is neither text nor number.
[[nodiscard]] QString stringValue(const QVariant& value);
[[nodiscard]] QVariantList listValue(const QVariant& value);
/// Empty unless every element is a string.
[[nodiscard]] QStringList stringListValue(const QVariant& value);
[[nodiscard]] QVariantMap mapValue(const QVariant& value);

}  // namespace platform
