#pragma once

#include <QString>

namespace platform {

/// Whether this process runs in a Flatpak's sandbox.
[[nodiscard]] bool isInFlatpak(const QString& systemRoot = {});

}  // namespace platform
