#pragma once

#include <QStringList>

namespace platform {

/// Looks whether the message buses that the environment names answer at all, for half a second,
/// and has the process do without those that do not: whoever connects to one of them waits for it
/// without end. To be called before there is a second thread. The variables that were changed.
[[nodiscard]] QStringList leaveMuteBusesAlone();
void logMuteBuses(const QStringList& variables);

}  // namespace platform
