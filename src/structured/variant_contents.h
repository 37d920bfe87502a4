#pragma once

#include <QVariant>

namespace structured {

/// What a variant holds, where it stands, without the copy that QVariant's own accessors make. The
/// variant must hold exactly a `Value`.
template <typename Value>
[[nodiscard]] const Value& contentsOf(const QVariant& variant) {
    return *static_cast<const Value*>(variant.constData());
}

}  // namespace structured
