#pragma once

#include <QByteArray>
#include <QVariant>

#include "platform/files/property_list.h"

namespace structured {

struct JsonResult {
    /// QVariantMap or QVariantList, and below them also QString, qint64, quint64 where that is too
    /// small, double, bool and, for null, std::nullptr_t. Invalid: refused, see `error`.
    QVariant value;
    platform::ParseError error;
};

/// Reads strict JSON (RFC 8259) with an object or an array as its root. A key that stands twice in
/// an object, half a surrogate pair, a number beyond the range of double, more than `maximumDepth`
/// levels and more than `maximumTextBytes` are refused. An integer beyond 64 bits becomes a double.
/// Any thread.
[[nodiscard]] JsonResult readJson(const QByteArray& utf8);

}  // namespace structured
