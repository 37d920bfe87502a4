#pragma once

#include <QVariant>

namespace structured {

/// Whether a value has a JSON form: an object or array as its root, nothing in it but the types of
/// `JsonResult` and other integers, no text with half a surrogate pair, no infinite number, at most
/// `maximumDepth` levels.
[[nodiscard]] bool isValidJSONObject(const QVariant& value);

}  // namespace structured
