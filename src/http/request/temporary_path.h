#pragma once

#include <QString>

namespace http {

/// A path in the temporary folder that nothing else uses; no file is made.
[[nodiscard]] QString makeTemporaryPath();

/// True if the file is gone or was never there.
bool removeFileIfPresent(const QString& path);

}  // namespace http
