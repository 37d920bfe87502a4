#include "platform/session/launch_context.h"

#include "platform/session/bundled_gio.h"

namespace platform {

LaunchContext::LaunchContext(const Gio& gio) : gio_(gio), context_(gio.newLaunchContext()) {
    for (const QByteArray& variable : variablesOfBundledGio()) {
        gio_.unsetInLaunchContext(context_, variable.constData());
    }
}

LaunchContext::~LaunchContext() {
    gio_.unref(context_);
}

}  // namespace platform
