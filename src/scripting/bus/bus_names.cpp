#include "scripting/bus/bus_names.h"

#include <QFileInfo>

namespace scripting::bus {

bool isThere() {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
           (!runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/bus")));
}

}  // namespace scripting::bus
