#pragma once

#include <QString>

#include "browser/install_report.h"

namespace browser {

/// Lets the session bus start that program as Orlop, for whoever hands something over while it does
/// not run. Where what all users have leads there already, the user needs no description of it, and
/// one that is there goes.
void installBusService(const QString& program, InstallReport& report);

/// Removes the user's own description again.
void uninstallBusService(InstallReport& report);

}  // namespace browser
