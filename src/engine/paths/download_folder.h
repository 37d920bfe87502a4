#pragma once

#include <QString>

#include "platform/base/user_defaults.h"

namespace engine {

class DownloadRecord;

/// The folder of a finished file: the user's choice for this download, else that of the first rule
/// that has one, else the general one. It is made if missing.
[[nodiscard]] QString downloadBasePath(const DownloadRecord& download);

/// By the rules alone. Empty: none gives a folder that can be used.
[[nodiscard]] QString specialCaseDownloadBasePath(const DownloadRecord& download);

/// The subfolder of `path` that a date format (the value of `format`) asks for. `path` itself if
/// there is no format or the subfolder cannot be made.
[[nodiscard]] QString downloadPathWithSubfolder(const QString& path,
                                                const platform::Setting<QString>& format,
                                                const DownloadRecord& download);

}  // namespace engine
