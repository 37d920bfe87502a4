#pragma once

#include "platform/files/property_list.h"

namespace platform {

/// The XML form of `readPropertyList` and `writePropertyList`.
[[nodiscard]] PropertyListResult readXmlPropertyList(const QByteArray& data,
                                                     DuplicateKeys duplicateKeys);
[[nodiscard]] QByteArray writeXmlPropertyList(const QVariant& value);

}  // namespace platform
