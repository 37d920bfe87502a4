#include "links/paths/sandbox.h"

#include <QProcessEnvironment>

#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/session/flatpak.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

bool isSandboxEnvironment() {
    const auto environment = QProcessEnvironment::systemEnvironment();
    const QString container = environment.value(u"APP_SANDBOX_CONTAINER_ID"_s);
    const QString home = environment.value(u"HOME"_s);
    const bool sandboxed = environment.contains(u"APP_SANDBOX_CONTAINER_ID"_s) ||
                           home.contains(u"/Library/Containers/"_s) ||
                           environment.contains(u"SNAP"_s) || platform::isInFlatpak();
    // Only what decides: the rest of an environment may hold secrets, and logs are passed on.
    platform::debugLog([&] {
        return filledFormat(u"environment: %@ => %@"_s,
                            {u"APP_SANDBOX_CONTAINER_ID=%1, HOME=%2"_s.arg(container, home),
                             sandboxed ? u"sandboxed"_s : u"not sandboxed"_s});
    });
    return sandboxed;
}

}  // namespace

bool isSandboxed() {
    static const bool sandboxed = isSandboxEnvironment();
    return sandboxed;
}

}  // namespace links
