#pragma once

#include <QString>

namespace platform {

/// The folder of the host for which the portal gave this sandbox a document, which has a path of
/// its own below the portal's mount (org.freedesktop.portal.Documents). Empty: the path is no
/// document, or the portal is too old to say (before its version 5). Waits for the portal for a
/// second at most; main thread.
[[nodiscard]] QString hostPathOfDocument(const QString& path);

/// Whether what is written there is gone with this process: the root of a Flatpak lies in memory,
/// and folders of the host that it may not see can be made in it all the same.
[[nodiscard]] bool isOfSandboxAlone(const QString& path);

}  // namespace platform
