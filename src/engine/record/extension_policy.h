#pragma once

#include <QString>

namespace engine {

/// The name with the content type's usual extension appended, where the policy wants it (see the
/// setting "Filename Extension Policy"); else the name as it is. `contentType` may have parameters.
[[nodiscard]] QString filenameWithExtensionPolicy(const QString& name, const QString& contentType,
                                                  qint64 policy);

}  // namespace engine
