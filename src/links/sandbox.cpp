#include "links/sandbox.h"

#include <QProcessEnvironment>

#include "links/localization.h"
#include "platform/base/log.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

bool isSandboxEnvironment() {
    const auto environment = QProcessEnvironment::systemEnvironment();
    const bool sandboxed = environment.contains(u"APP_SANDBOX_CONTAINER_ID"_s) ||
                           environment.value(u"HOME"_s).contains(u"/Library/Containers/"_s);
    platform::debugLog([&] {
        return filledFormat(u"environment: %@ => %@"_s,
                            {environment.toStringList().join(u", "_s),
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
