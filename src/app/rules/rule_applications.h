#pragma once

#include <QStringList>
#include <vector>

#include "platform/session/applications.h"

namespace app {

/// What a rule for these extensions can open files with: the applications that open all of those
/// extensions that any application opens, sorted by name.
[[nodiscard]] std::vector<platform::ApplicationEntry> applicationsForExtensions(
    const QStringList& extensions);

/// The one to propose among them for a rule that names `current` so far: that one if it is among
/// them, else the default one for the first extension, else the first. Empty: there are none.
[[nodiscard]] QString proposedApplication(const std::vector<platform::ApplicationEntry>& among,
                                          const QString& current, const QStringList& extensions);

}  // namespace app
