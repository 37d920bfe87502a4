#pragma once

#include "platform/files/property_list.h"

namespace platform {

/// The binary form ("bplist00") of `readPropertyList` and `writePropertyList`.
[[nodiscard]] PropertyListResult readBinaryPropertyList(const QByteArray& data);
[[nodiscard]] QByteArray writeBinaryPropertyList(const QVariant& value);

}  // namespace platform
