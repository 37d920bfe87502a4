#pragma once

#include <QString>
#include <functional>

#include "platform/net/url.h"

namespace app {

/// What the desktop does with files and addresses. Every call has a default that does nothing; main
/// thread.
struct Workspace {
    /// With the application that the user prefers. False: it could not be opened.
    std::function<bool(const platform::Url&)> openURL = [](const platform::Url&) { return false; };
    /// Shows a file in its folder. False: it could not be shown.
    std::function<bool(const QString& path)> revealFile = [](const QString&) { return false; };
    /// By the identifier of a desktop entry. False: it is there but could not be started.
    std::function<bool(const QString& path, const QString& application)> openWithApplication =
        [](const QString&, const QString&) { return false; };
};

}  // namespace app
