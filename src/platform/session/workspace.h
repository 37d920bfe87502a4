#pragma once

#include <QString>

namespace platform {

class Url;

/// Opens an address or a file with the application that the user prefers for it. False: there is
/// none, or it could not be started. Main thread.
bool openURL(const Url& url);

/// Shows a file in its folder in the file manager (org.freedesktop.FileManager1), or opens the
/// folder where there is none. Does not wait for it. False: there is no bus, and the folder could
/// not be opened. Main thread.
bool revealFile(const QString& path);

}  // namespace platform
